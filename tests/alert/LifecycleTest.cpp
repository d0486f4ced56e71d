// How a dialog comes and goes, whatever its handlers do meanwhile.
#include "RQAlertView/RQAlertViewController.h"
#include "alert/Dialogs.h"
#include "alert/Journal.h"

#include <optional>

namespace {

using testing::ElementsAre;

class Lifecycle : public Dialogs {};

TEST_F(Lifecycle, LivesFromShowToDismissalAndNoLonger) {
  Dialog dialog = alert();
  const std::weak_ptr<RQAlertView> weak = dialog;
  const std::weak_ptr<RQAlertViewWindow> window = dialog->window();
  EXPECT_EQ(dialog->state(), RQAlertViewState::Made);
  EXPECT_TRUE(dialog->window()->isKeyWindow());
  dialog->show();
  EXPECT_TRUE(dialog->isShowing());
  dialog.reset();
  letGo();
  ASSERT_FALSE(weak.expired());
  weak.lock()->dismiss();
  EXPECT_TRUE(window.expired());
  letGo();
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(keyWindow(), appWindow.get());
  EXPECT_EQ(focus(), appField);
}

TEST_F(Lifecycle, StaysOutOfSightWhereItIsShownHidden) {
  const Dialog dialog = alert();
  Journal journal(*dialog);
  dialog->showAnimated(true, true, [&] { journal.note("completed"); });
  EXPECT_EQ(dialog->state(), RQAlertViewState::Shown);
  EXPECT_EQ(journal.lines.back(), "completed");
  EXPECT_TRUE(dialog->window()->isKeyWindow());
  EXPECT_FALSE(dialog->view()->isVisible());
  dialog->view()->show();
  EXPECT_TRUE(frameOf(dialog)->isVisible());
  tap(dialog, "One");
  EXPECT_FALSE(dialog->isShowing());
}

TEST_F(Lifecycle, EndsTypingInTheKeyWindow) {
  const Dialog dialog = withFields(1);
  dialog->textFieldsArray()[0]->setFocus();
  QString typed;
  dialog->setWillShowHandler([&](RQAlertView&) { EXPECT_FALSE(appField->hasFocus()); });
  dialog->setWillDismissHandler([&](RQAlertView& self) {
    EXPECT_FALSE(self.textFieldsArray()[0]->hasFocus());
    typed = self.textFieldsArray()[0]->text();
  });
  dialog->show();
  QTest::keyClicks(focus(), "abc");
  EXPECT_EQ(dialog->textFieldsArray()[0]->text(), "abc");
  dialog->dismiss();
  EXPECT_EQ(typed, "abc");
}

TEST_F(Lifecycle, TakesNoInputBeforeItIsInPlaceNorKeepsItForLater) {
  setMotionEnabled(true);
  const Dialog dialog = alert({"One"}, "Cancel");
  dialog->setAnimationDuration(0.05);
  Journal journal(*dialog);
  QWidget* const view = dialog->view();
  const auto press = [&] {
    QTest::mouseClick(view, Qt::LeftButton, {}, view->rect().center());
    QTest::mousePress(view, Qt::LeftButton, {}, QPoint(3, 3));
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Escape})
      QTest::keyPress(UIScreen::mainScreen()->windowHandle(), key);
  };
  const auto release = [&] {
    QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(3, 3));
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Escape})
      QTest::keyRelease(UIScreen::mainScreen()->windowHandle(), key);
  };
  QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(3, 3));
  EXPECT_TRUE(journal.take().empty()) << "before it is shown";
  dialog->showAnimated();
  ASSERT_EQ(dialog->state(), RQAlertViewState::Showing);
  journal.take();
  press();
  ASSERT_TRUE(becomes(dialog, RQAlertViewState::Shown));
  EXPECT_TRUE(frameOf(dialog)->isVisible());
  release();
  EXPECT_THAT(journal.take(), ElementsAre("handler DidShow", "delegate DidShow", "posted DidShow"));
  dialog->dismissAnimated();
  ASSERT_EQ(dialog->state(), RQAlertViewState::Dismissing);
  journal.take();
  press();
  release();
  EXPECT_TRUE(journal.take().empty());
  EXPECT_TRUE(becomes(dialog, RQAlertViewState::Dismissed));
}

TEST_F(Lifecycle, CompletesAShowThatIsDismissedBeforeItIsSeen) {
  const Dialog dialog = alert();
  std::vector<std::string> order;
  dialog->setWillShowHandler([](RQAlertView& self) { self.dismiss(); });
  dialog->setDidShowHandler([&](RQAlertView&) { order.emplace_back("shown"); });
  dialog->setDidDismissHandler([&](RQAlertView&) { order.emplace_back("dismissed"); });
  dialog->showAnimated(true, [&] { order.emplace_back("completed"); });
  EXPECT_THAT(order, ElementsAre("dismissed", "completed"));
}

TEST_F(Lifecycle, DoesNotAnswerItselfForEver) {
  const Dialog dialog = alert({"One"}, "Cancel");
  int cancels = 0;
  int actions = 0;
  dialog->setCancelHandler([&](RQAlertView& self) {
    ++cancels;
    self.forceCancel();
    self.forceActionAtIndex(0);
  });
  dialog->setActionHandler([&](RQAlertView& self, std::size_t, const QString&) {
    ++actions;
    self.forceCancel();
  });
  dialog->show();
  dialog->forceCancel();
  EXPECT_EQ(cancels, 1);
  EXPECT_EQ(actions, 1);
  letGo();
}

TEST_F(Lifecycle, TakesAnotherAnswerFromAHandlerAndEveryCompletionOfItsDismissal) {
  setMotionEnabled(true);
  const Dialog dialog = alert({"A", "B"}, "Cancel");
  std::vector<std::string> order;
  dialog->setAnimationDuration(0.02);
  dialog->setActionHandler([&](RQAlertView& self, std::size_t index, const QString& title) {
    order.push_back(title.toStdString());
    if (index == 0) self.forceActionAtIndex(1);
  });
  dialog->setDidDismissAfterActionHandler([&](RQAlertView&, std::size_t, const QString& title) {
    order.push_back("after " + title.toStdString());
  });
  dialog->setDidDismissHandler(
      [&](RQAlertView& self) { self.dismissAnimated(true, [&] { order.emplace_back("third"); }); });
  dialog->show();
  dialog->forceActionAtIndex(0);
  dialog->dismissAnimated(true, [&] { order.emplace_back("second"); });
  ASSERT_TRUE(becomes(dialog, RQAlertViewState::Dismissed));
  EXPECT_THAT(order, ElementsAre("A", "B", "after B", "after A", "second", "third"));
}

TEST_F(Lifecycle, SurvivesTheLossOfItsWindow) {
  setMotionEnabled(true);
  for (const bool shown : {false, true}) {
    Dialog dialog = alert();
    const std::weak_ptr<RQAlertView> weak = dialog;
    if (shown) dialog->showAnimated();
    delete dialog->window().get();
    EXPECT_EQ(dialog->state(), RQAlertViewState::Dismissed);
    EXPECT_TRUE(dialog->textFieldsArray().empty());
    dialog->setTitleTextColor(Qt::red);
    dialog->setButtonEnabled(false, 0);
    dialog->dismiss();
    dialog->show();
    dialog.reset();
    letGo();
    EXPECT_TRUE(weak.expired());
  }
}

TEST_F(Lifecycle, ClosesByATouchOnTheCoverWhereItMay) {
  struct Case {
    const char* name;
    Dialog dialog;
    std::optional<bool> cancelOnTouch;
    bool closes;
  };
  for (const auto& [name, dialog, cancelOnTouch, closes] :
       {Case{"plain", alert(), {}, true}, Case{"sheet", sheet({"One"}), {}, true},
        Case{"indicator", waiting(), {}, false}, Case{"fields", withFields(1), {}, false},
        Case{"plain, forbidden", alert(), false, false}, Case{"indicator, allowed", waiting(), true, true},
        Case{"with a cancel button that is disabled", alert({}, "Cancel"), {}, true}}) {
    SCOPED_TRACE(name);
    if (cancelOnTouch) dialog->setCancelOnTouch(*cancelOnTouch);
    dialog->setCancelButtonEnabled(false);
    listeningTo(dialog);
    // On the box itself a touch does nothing.
    QTest::mouseClick(frameOf(dialog), Qt::LeftButton, {}, QPoint(frameOf(dialog)->width() / 2, 4));
    EXPECT_THAT(answered(), ElementsAre());
    QTest::mouseClick(dialog->view(), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_EQ(answered().size(), closes ? 1U : 0U);
    close(dialog);
  }
}

TEST_F(Lifecycle, LetsTheScreenBelowDecideOnRotationAndStatusBar) {
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
  const Dialog dialog = alert();
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
