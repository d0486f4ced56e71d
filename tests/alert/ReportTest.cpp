// To whom a dialog reports what, and what it refuses; the order of the reports is in flows.txt.
#include "alert/Dialogs.h"
#include "support/SystemLog.h"

#include <functional>
#include <stdexcept>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Reports : public Dialogs {
 protected:
  static std::string messageOf(const std::function<void()>& call) {
    try {
      call();
    } catch (const InternalInconsistency& error) {
      return error.what();
    }
    return "nothing was thrown";
  }
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

TEST_F(Reports, ThrowWhereAButtonIsForcedThatThereIsNotOrADialogWasNotInitialized) {
  const std::string uninitialized =
      "You need to use one of \"- initWith...\" or \"+ alertViewWith...\" methods to initialize RQAlertView";
  const Dialog bare = RQAlertView::alloc();
  const Dialog dialog = showing("alert buttons=A,B");
  const std::pair<std::function<void()>, std::string> rows[] = {
      {[&] { dialog->forceCancel(); }, "Cancel button is not exists"},
      {[&] { dialog->forceDestructive(); }, "Destructive button is not exists"},
      {[&] { dialog->forceActionAtIndex(2); }, "Button at index 2 is not exists"},
      {[&] { dialog->forceActionAtIndex(18446744073709551615U); },
       "Button at index 18446744073709551615 is not exists"},
      {[&] { bare->show(); }, uninitialized},
      {[&] { bare->showAnimated(); }, uninitialized},
      {[&] { bare->showAnimated(true, [] {}); }, uninitialized},
      {[&] { RQAlertView::appearance()->show(); }, uninitialized},
      {[&] { dialog->transitionToAlertView(bare); }, uninitialized},
  };
  for (const auto& [call, message] : rows) EXPECT_EQ(messageOf(call), message);
  EXPECT_TRUE(dialog->isShowing());
  dialog->setButtonEnabled(false, 2);
  EXPECT_EQ(dialog->buttonsEnabledArray(), (std::vector<bool>{true, true}));
  EXPECT_THROW(dialog->isButtonEnabledAtIndex(2), std::out_of_range);
  EXPECT_THROW(dialog->setButtonPropertiesAtIndex(2, [](RQAlertViewButtonProperties&) {}), std::out_of_range);
}

TEST_F(Reports, WarnOfEachDeprecatedDelegateMethodOnce) {
  auto delegate = std::make_shared<RQAlertViewDelegate>();
  const Dialog dialog = dialogFrom("alert buttons=A");
  systemlog::take();
  dialog->setDelegate(delegate);
  EXPECT_THAT(systemlog::take(), IsEmpty());
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

// Every way of making a dialog, told apart by who hears of the action.
struct EntryPoint {
  const char* name;
  RQAlertViewType type;
  const char* content;
  std::function<Dialog()> bare;
  std::function<Dialog(RQAlertViewActionHandler, RQAlertViewHandler, RQAlertViewHandler)> withHandlers;
  std::function<Dialog(std::shared_ptr<RQAlertViewDelegate>)> withDelegate;
};

#define ENTRY_POINTS_OF(object, type, content, name, ...)                                  \
  {                                                                                        \
#object #name, RQAlertViewType::type, content, [] { return object##name(__VA_ARGS__); }, \
        [](auto a, auto c, auto d) { return object##name(__VA_ARGS__, a, c, d); },         \
        [](auto delegate) { return object##name(__VA_ARGS__, delegate); } \
  }
#define ENTRY_POINTS(...)                                   \
  ENTRY_POINTS_OF(RQAlertView::alloc()->init, __VA_ARGS__), \
      ENTRY_POINTS_OF(RQAlertView::alertView, __VA_ARGS__)
#define TEXTS "Title", "Message"
#define BUTTONS QStringList{"A", "B"}, "Cancel", "Delete"

constexpr auto sheet = RQAlertViewStyle::ActionSheet;
const std::vector<EntryPoint> entryPoints{
    ENTRY_POINTS(Default, "", WithTitle, TEXTS, sheet, BUTTONS),
    ENTRY_POINTS(Default, " view", WithViewAndTitle, TEXTS, sheet, new QWidget, BUTTONS),
    ENTRY_POINTS(ActivityIndicator, "Label", WithActivityIndicatorAndTitle, TEXTS, sheet, "Label", BUTTONS),
    ENTRY_POINTS(ProgressView, "Label 0.5", WithProgressViewAndTitle, TEXTS, sheet, 0.5, "Label", BUTTONS),
    ENTRY_POINTS(
        TextFields, " fields", WithTextFieldsAndTitle, TEXTS, 2, [](RQAlertViewTextField&, std::size_t) {},
        BUTTONS),
};

TEST_F(Reports, AreAttachedByEveryEntryPoint) {
  ASSERT_EQ(entryPoints.size() * 3, 30U);
  for (const EntryPoint& entry : entryPoints) {
    SCOPED_TRACE(entry.name);
    const auto action = [&](RQAlertView&, std::size_t, const QString& title) {
      heard_.push_back(title.toStdString());
    };
    auto delegate = std::make_shared<RQAlertViewDelegate>();
    delegate->alertViewClickedButtonAtIndex = action;
    delegate->alertViewCancelled = hearing("cancelled");
    delegate->alertViewDestructed = hearing("destructed");
    for (const Dialog& dialog :
         {entry.bare(), entry.withHandlers(action, hearing("cancelled"), hearing("destructed")),
          entry.withDelegate(delegate)}) {
      EXPECT_EQ(dialog->type(), entry.type);
      const bool fields = entry.type == RQAlertViewType::TextFields;
      EXPECT_EQ(dialog->style(), fields ? RQAlertViewStyle::Alert : sheet);
      EXPECT_EQ((QStringList{dialog->title(), dialog->message(), dialog->cancelButtonTitle(),
                             dialog->destructiveButtonTitle()} +
                 dialog->buttonTitles()),
                (QStringList{"Title", "Message", "Cancel", "Delete", "A", "B"}));
      QString content = dialog->progressLabelText();
      if (dialog->progress() > 0) content += QString(" %1").arg(dialog->progress());
      if (dialog->innerView()) content += " view";
      if (dialog->textFieldsArray().size() == 2) content += " fields";
      EXPECT_EQ(content, entry.content);
      dialog->forceActionAtIndex(1);
      dialog->forceCancel();
      dialog->forceDestructive();
    }
    EXPECT_THAT(heard(), ElementsAre("B", "cancelled", "destructed", "B", "cancelled", "destructed"));
  }
}

TEST_F(Reports, LetTheScreenBelowDecideOnRotationAndStatusBar) {
  class Opinionated : public UIViewController {
   public:
    bool shouldAutorotate() const override { return false; }
    UIInterfaceOrientationMask supportedInterfaceOrientations() const override {
      return UIInterfaceOrientationMask::LandscapeLeft;
    }
    UIStatusBarStyle preferredStatusBarStyle() const override { return UIStatusBarStyle::LightContent; }
    bool prefersStatusBarHidden() const override { return true; }
    UIStatusBarAnimation preferredStatusBarUpdateAnimation() const override {
      return UIStatusBarAnimation::Slide;
    }
  };
  appController->presentViewController(std::make_shared<Opinionated>(), false);
  const Dialog dialog = dialogFrom("alert");
  const auto controller = dialog->viewController();
  EXPECT_EQ(controller->alertView(), dialog);
  EXPECT_FALSE(controller->shouldAutorotate());
  EXPECT_EQ(controller->supportedInterfaceOrientations(), UIInterfaceOrientationMask::LandscapeLeft);
  EXPECT_EQ(controller->preferredStatusBarStyle(), UIStatusBarStyle::LightContent);
  EXPECT_TRUE(controller->prefersStatusBarHidden());
  EXPECT_EQ(controller->preferredStatusBarUpdateAnimation(), UIStatusBarAnimation::Slide);
  appController->dismissViewControllerAnimated(false);
  EXPECT_TRUE(controller->shouldAutorotate());
}

}  // namespace
