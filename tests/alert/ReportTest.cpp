// To whom a dialog reports what, and what it refuses; the order of the reports is in flows.txt.
#include "alert/Dialogs.h"
#include "support/SystemLog.h"

#include <functional>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Reports : public Dialogs {
 protected:
  std::vector<std::string> heard() { return std::exchange(heard_, {}); }
  RQAlertViewHandler hearing(const std::string& what) {
    return [this, what](RQAlertView&) { heard_.push_back(what); };
  }

  std::vector<std::string> heard_;
};

TEST_F(Reports, ReachOnlyWhatTheDelegateRespondsToAndNoneOnceItHasGone) {
  auto delegate = std::make_shared<RQAlertViewDelegate>();
  delegate->alertViewDidShow = hearing("shown");
  const Dialog first = dialogFrom("alert buttons=A");
  first->setDelegate(delegate);
  first->show();
  EXPECT_THAT(heard(), ElementsAre("shown"));
  first->dismiss();
  EXPECT_EQ(first->delegate(), nullptr);
  const Dialog second = dialogFrom("alert buttons=A");
  second->setDelegate(delegate);
  delegate.reset();
  second->show();
  second->forceActionAtIndex(0);
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Reports, ReachWhatWasSetBeforeTheInitializerAndTheDelegateThatAHandlerSets) {
  auto delegate = std::make_shared<RQAlertViewDelegate>();
  delegate->alertViewCancelled = hearing("cancelled");
  delegate->alertViewDidDismissAfterCancelled = hearing("afterwards");
  const Dialog dialog = RQAlertView::alloc();
  dialog->setDidShowHandler(hearing("shown"));
  dialog->initWithTitle("Title", {}, RQAlertViewStyle::Alert, {}, "Cancel", {})->show();
  dialog->setCancelHandler([&](RQAlertView& self) { self.setDelegate(delegate); });
  dialog->forceCancel();
  EXPECT_THAT(heard(), ElementsAre("shown", "cancelled", "afterwards"));
}

TEST_F(Reports, WarnOfEachDeprecatedDelegateMethodOnce) {
  auto delegate = std::make_shared<RQAlertViewDelegate>();
  const Dialog dialog = dialogFrom("alert buttons=A");
  systemlog::take();
  delegate->alertViewButtonPressedWithTitle = [](RQAlertView&, const QString&, std::size_t) { FAIL(); };
  delegate->alertViewDestructiveButtonPressed = [](RQAlertView&) { FAIL(); };
  dialog->setDelegate(delegate);
  EXPECT_THAT(
      systemlog::take(),
      ElementsAre("WARNING: delegate method \"alertView:buttonPressedWithTitle:index:\" is DEPRECATED, use "
                  "\"alertView:clickedButtonAtIndex:title:\" instead",
                  "WARNING: delegate method \"alertViewDestructiveButtonPressed:\" is DEPRECATED, use "
                  "\"alertViewDestructed:\" instead"));
  dialog->show();
  dialog->forceActionAtIndex(0);
}

// Each family in its six ways: initializer and factory, alone, with handlers, and with a delegate.
TEST_F(Reports, AreAttachedByEveryEntryPoint) {
  const auto action = [this](RQAlertView&, std::size_t, const QString& title) {
    heard_.push_back(title.toStdString());
  };
  const RQAlertViewHandler cancel = hearing("cancelled");
  const RQAlertViewHandler destructive = hearing("destructed");
  auto delegate = std::make_shared<RQAlertViewDelegate>();
  delegate->alertViewClickedButtonAtIndex = action;
  delegate->alertViewCancelled = cancel;
  delegate->alertViewDestructed = destructive;
  const auto describe = [](const RQAlertView& dialog) {
    QStringList parts{dialog.title(), dialog.message(), dialog.progressLabelText()};
    parts += dialog.buttonTitles();
    parts << dialog.cancelButtonTitle() << dialog.destructiveButtonTitle()
          << (dialog.style() == RQAlertViewStyle::Alert ? "alert" : "sheet")
          << QString("type %1").arg(static_cast<int>(dialog.type())) << QString::number(dialog.progress())
          << QString("%1 fields").arg(dialog.textFieldsArray().size());
    if (dialog.innerView()) parts << "view";
    return parts.join(',');
  };
  const auto expect = [&](const QString& description, const std::vector<Dialog>& dialogs) {
    for (const Dialog& dialog : dialogs) {
      EXPECT_EQ(describe(*dialog), description);
      dialog->forceActionAtIndex(1);
      dialog->forceCancel();
      dialog->forceDestructive();
    }
    std::vector<std::string> expected;
    for (int way = 0; way < 4; ++way) expected.insert(expected.end(), {"B", "cancelled", "destructed"});
    EXPECT_EQ(heard(), expected) << description.toStdString();
  };
#define WAYS(object, name, ...)                                                      \
  object##name(__VA_ARGS__), object##name(__VA_ARGS__, action, cancel, destructive), \
      object##name(__VA_ARGS__, delegate)
#define EXPECT_FAMILY(description, ...) \
  expect(description,                   \
         {WAYS(RQAlertView::alloc()->init, __VA_ARGS__), WAYS(RQAlertView::alertView, __VA_ARGS__)})
#define BUTTONS QStringList{"A", "B"}, "C", "D"
  constexpr auto sheet = RQAlertViewStyle::ActionSheet;
  const auto nothing = [](RQAlertViewTextField&, std::size_t) {};
  EXPECT_FAMILY("T,M,,A,B,C,D,sheet,type 0,0,0 fields", WithTitle, "T", "M", sheet, BUTTONS);
  EXPECT_FAMILY("T,M,,A,B,C,D,sheet,type 0,0,0 fields,view", WithViewAndTitle, "T", "M", sheet, new QWidget,
                BUTTONS);
  EXPECT_FAMILY("T,M,L,A,B,C,D,sheet,type 1,0,0 fields", WithActivityIndicatorAndTitle, "T", "M", sheet, "L",
                BUTTONS);
  EXPECT_FAMILY("T,M,L,A,B,C,D,sheet,type 2,0.5,0 fields", WithProgressViewAndTitle, "T", "M", sheet, 0.5,
                "L", BUTTONS);
  EXPECT_FAMILY("T,M,,A,B,C,D,alert,type 3,0,2 fields", WithTextFieldsAndTitle, "T", "M", 2, nothing,
                BUTTONS);
}

}  // namespace
