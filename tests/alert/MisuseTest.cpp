// What a dialog says when it is used in a way in which it cannot be used.
#include "alert/Dialogs.h"
#include "support/SystemLog.h"

#include <stdexcept>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Misuse : public Dialogs {
 protected:
  template <typename Call>
  static std::string messageOf(Call call) {
    try {
      call();
    } catch (const InternalInconsistency& error) {
      return error.what();
    }
    return "nothing was thrown";
  }
};

TEST_F(Misuse, OfButtonsThatThereAreNotIsAnInconsistency) {
  const Dialog dialog = alert({"A", "B"});
  EXPECT_EQ(messageOf([&] { dialog->forceCancel(); }), "Cancel button is not exists");
  EXPECT_EQ(messageOf([&] { dialog->forceDestructive(); }), "Destructive button is not exists");
  EXPECT_EQ(messageOf([&] { dialog->forceActionAtIndex(2); }), "Button at index 2 is not exists");
  EXPECT_EQ(messageOf([&] { dialog->forceActionAtIndex(18446744073709551615U); }),
            "Button at index 18446744073709551615 is not exists");
  EXPECT_EQ(messageOf([&] { dialog->forceActionAtIndex(1); }), "nothing was thrown");
}

TEST_F(Misuse, OfADialogThatWasNotInitializedIsAnInconsistency) {
  const std::string message =
      "You need to use one of \"- initWith...\" or \"+ alertViewWith...\" methods to initialize RQAlertView";
  const Dialog dialog = RQAlertView::alloc();
  EXPECT_EQ(messageOf([&] { dialog->show(); }), message);
  EXPECT_EQ(messageOf([&] { dialog->showAnimated(); }), message);
  EXPECT_EQ(messageOf([&] { dialog->showAnimated(true, [] {}); }), message);
  EXPECT_EQ(messageOf([&] { RQAlertView::appearance()->show(); }), message);
  const Dialog shown = showing(alert());
  EXPECT_EQ(messageOf([&] { shown->transitionToAlertView(dialog); }), message);
  EXPECT_TRUE(shown->isShowing());
  shown->dismiss();
}

TEST_F(Misuse, OfAnIndexIsIgnoredWhereAButtonIsEnabledAndOutOfRangeElsewhere) {
  const Dialog dialog = alert({"A"});
  dialog->setButtonEnabled(false, 1);
  EXPECT_TRUE(dialog->isButtonEnabledAtIndex(0));
  EXPECT_THROW(dialog->isButtonEnabledAtIndex(1), std::out_of_range);
  EXPECT_THROW(dialog->setButtonPropertiesAtIndex(1, [](RQAlertViewButtonProperties&) {}), std::out_of_range);
}

TEST_F(Misuse, OfADeprecatedDelegateMethodIsWarnedAboutOnceForEach) {
  auto delegate = std::make_shared<RQAlertViewDelegate>();
  const Dialog dialog = alert();
  systemlog::take();
  dialog->setDelegate(delegate);
  EXPECT_THAT(systemlog::take(), IsEmpty());
  int called = 0;
  delegate->alertViewButtonPressedWithTitle = [&](RQAlertView&, const QString&, std::size_t) { ++called; };
  delegate->alertViewDestructiveButtonPressed = [&](RQAlertView&) { ++called; };
  dialog->setDelegate(delegate);
  EXPECT_THAT(
      systemlog::take(),
      ElementsAre("WARNING: delegate method \"alertView:buttonPressedWithTitle:index:\" is DEPRECATED, use "
                  "\"alertView:clickedButtonAtIndex:title:\" instead",
                  "WARNING: delegate method \"alertViewDestructiveButtonPressed:\" is DEPRECATED, use "
                  "\"alertViewDestructed:\" instead"));
  dialog->show();
  dialog->forceActionAtIndex(0);
  EXPECT_EQ(called, 0);
}

}  // namespace
