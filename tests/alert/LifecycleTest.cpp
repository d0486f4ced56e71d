// How a dialog comes and goes, whatever its handlers do meanwhile.
#include "RQAlertView/RQAlertViewController.h"
#include "alert/Dialogs.h"
#include "alert/Journal.h"
#include "support/SystemLog.h"

#include <stdexcept>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

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

TEST_F(Lifecycle, EndsWithItsLastReferenceWhereItWasNeverShown) {
  Dialog dialog = alert();
  const std::weak_ptr<RQAlertView> weak = dialog;
  dialog.reset();
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(keyWindow(), appWindow.get());
}

TEST_F(Lifecycle, IsShownOnceAndDismissedOnce) {
  const Dialog dialog = alert();
  Journal journal(*dialog);
  dialog->dismiss();
  EXPECT_TRUE(journal.take().empty());
  dialog->show();
  journal.take();
  dialog->show();
  dialog->showAnimated();
  EXPECT_TRUE(journal.take().empty());
  dialog->dismiss();
  journal.take();
  dialog->dismiss();
  dialog->show();
  dialog->forceActionAtIndex(0);
  EXPECT_TRUE(journal.take().empty());
  EXPECT_EQ(dialog->window(), nullptr);
  EXPECT_EQ(dialog->viewController(), nullptr);
  EXPECT_EQ(dialog->view(), nullptr);
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
  tap(dialog, QStringLiteral("One"));
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
  QTest::keyClicks(focus(), QStringLiteral("abc"));
  EXPECT_EQ(dialog->textFieldsArray()[0]->text(), "abc");
  dialog->dismiss();
  EXPECT_EQ(typed, "abc");
}

TEST_F(Lifecycle, TakesNoInputWhileItMoves) {
  setMotionEnabled(true);
  const Dialog dialog = alert({QStringLiteral("One")}, QStringLiteral("Cancel"));
  dialog->setAnimationDuration(0.05);
  Journal journal(*dialog);
  dialog->showAnimated();
  journal.take();
  const auto poke = [&] {
    QTest::mouseClick(dialog->view(), Qt::LeftButton, {}, QPoint(3, 3));
    QTest::mouseClick(dialog->view(), Qt::LeftButton, {}, dialog->view()->rect().center());
    QTest::keyClick(dialog->window().get(), Qt::Key_Return);
    QTest::keyClick(dialog->window().get(), Qt::Key_Escape);
  };
  ASSERT_EQ(dialog->state(), RQAlertViewState::Showing);
  poke();
  EXPECT_TRUE(journal.take().empty());
  ASSERT_TRUE(QTest::qWaitFor([&] { return dialog->state() == RQAlertViewState::Shown; }));
  EXPECT_TRUE(frameOf(dialog)->isVisible());
  journal.take();
  dialog->dismissAnimated();
  journal.take();
  ASSERT_EQ(dialog->state(), RQAlertViewState::Dismissing);
  poke();
  EXPECT_TRUE(journal.take().empty());
  EXPECT_TRUE(QTest::qWaitFor([&] { return dialog->state() == RQAlertViewState::Dismissed; }));
}

TEST_F(Lifecycle, FinishesAShowThatIsDismissedWhileItMoves) {
  setMotionEnabled(true);
  const Dialog dialog = alert();
  dialog->setAnimationDuration(0.05);
  Journal journal(*dialog);
  dialog->showAnimated(true, [&] { journal.note("show completed"); });
  dialog->dismissAnimated(true, [&] { journal.note("dismiss completed"); });
  EXPECT_THAT(journal.lines, Contains("show completed"));
  EXPECT_THAT(journal.lines, Contains("posted DidShow"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return dialog->state() == RQAlertViewState::Dismissed; }));
  EXPECT_EQ(std::count(journal.lines.begin(), journal.lines.end(), "posted DidDismiss"), 1);
  EXPECT_EQ(journal.lines.back(), "dismiss completed");
}

TEST_F(Lifecycle, MovesWithTheScaleAndTheFadeItWasGiven) {
  setMotionEnabled(true);
  const Dialog dialog = alert();
  dialog->setAnimationDuration(30);
  dialog->setBackgroundColor(Qt::blue);
  dialog->setTitleTextColor(Qt::blue);
  dialog->setMessageTextColor(Qt::blue);
  dialog->setInitialScale(2);
  dialog->showAnimated();
  const auto blueWidth = [&] {
    const QImage picture = dialog->view()->grab().toImage();
    const int middle = picture.height() / 2 - 40;
    int width = 0;
    for (int x = 0; x < picture.width(); ++x) {
      if (picture.pixelColor(x, middle).blue() > 60) ++width;
    }
    return width;
  };
  // At the very start there is nothing to see; a picture of the box, twice as wide, fades in.
  EXPECT_EQ(blueWidth(), 0);
  EXPECT_FALSE(frameOf(dialog)->isVisible());
  ASSERT_TRUE(QTest::qWaitFor([&] { return blueWidth() > 300; }));
  setMotionEnabled(false);
  dialog->dismiss();
}

TEST_F(Lifecycle, GoesOnWhereAHandlerThrows) {
  systemlog::take();
  const Dialog dialog = alert({QStringLiteral("One")}, QStringLiteral("Cancel"));
  int after = 0;
  const auto thrower = [](RQAlertView&) { throw std::runtime_error("handler failed"); };
  dialog->setWillShowHandler(thrower);
  dialog->setDidShowHandler(thrower);
  dialog->setCancelHandler([](RQAlertView& self) { self.forceDestructive(); });
  dialog->setWillDismissHandler(thrower);
  dialog->setDidDismissHandler(thrower);
  dialog->setDidDismissAfterCancelHandler([&](RQAlertView&) { ++after; });
  dialog->show();
  dialog->setShouldDismissAnimated(false);
  tap(dialog, QStringLiteral("Cancel"));
  EXPECT_EQ(after, 1);
  EXPECT_EQ(dialog->state(), RQAlertViewState::Dismissed);
  EXPECT_THAT(systemlog::take(), ElementsAre(HasSubstr("handler failed"), HasSubstr("handler failed"),
                                             HasSubstr("Destructive button is not exists"),
                                             HasSubstr("handler failed"), HasSubstr("handler failed")));
}

TEST_F(Lifecycle, MayBeDismissedFromAnyOfItsOwnReports) {
  using Setter = void (RQAlertView::*)(RQAlertViewHandler);
  for (const Setter setter :
       {&RQAlertView::setWillShowHandler, &RQAlertView::setDidShowHandler, &RQAlertView::setCancelHandler,
        &RQAlertView::setWillDismissHandler, &RQAlertView::setDidDismissHandler}) {
    Dialog dialog = alert({QStringLiteral("One")}, QStringLiteral("Cancel"));
    const std::weak_ptr<RQAlertView> weak = dialog;
    int dismissed = 0;
    dialog->setDidDismissHandler([&](RQAlertView&) { ++dismissed; });
    ((*dialog).*setter)([&](RQAlertView& self) {
      if (setter == &RQAlertView::setDidDismissHandler) ++dismissed;
      self.dismiss();
    });
    dialog->show();
    if (dialog->isShowing()) dialog->forceCancel();
    EXPECT_EQ(dismissed, 1);
    dialog.reset();
    letGo();
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(keyWindow(), appWindow.get());
  }
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
  const Dialog dialog = alert({QStringLiteral("One")}, QStringLiteral("Cancel"));
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
  const QPoint outside(5, 5);
  const auto indicator = [] {
    return RQAlertView::alertViewWithActivityIndicatorAndTitle(QStringLiteral("Wait"), none, alertStyle, none,
                                                               {}, none, none);
  };
  for (const auto& [name, make, closes] :
       std::initializer_list<std::tuple<const char*, std::function<Dialog()>, bool>>{
           {"plain", [] { return alert(); }, true},
           {"sheet", [] { return sheet({QStringLiteral("One")}); }, true},
           {"indicator", indicator, false},
           {"fields", [] { return withFields(1); }, false},
           {"plain, forbidden",
            [] {
              const Dialog dialog = alert();
              dialog->setCancelOnTouch(false);
              return dialog;
            },
            false},
           {"indicator, allowed",
            [&] {
              const Dialog dialog = indicator();
              dialog->setCancelOnTouch(true);
              return dialog;
            },
            true},
           {"plain, cancel button disabled",
            [] {
              const Dialog dialog = alert({}, QStringLiteral("Cancel"));
              dialog->setCancelButtonEnabled(false);
              return dialog;
            },
            true}}) {
    SCOPED_TRACE(name);
    const Dialog dialog = make();
    int cancels = 0;
    dialog->setCancelHandler([&](RQAlertView&) { ++cancels; });
    dialog->show();
    // On the box itself a touch does nothing.
    QTest::mouseClick(frameOf(dialog), Qt::LeftButton, {}, QPoint(frameOf(dialog)->width() / 2, 4));
    EXPECT_EQ(cancels, 0);
    QTest::mouseClick(dialog->view(), Qt::LeftButton, {}, outside);
    EXPECT_EQ(cancels, closes ? 1 : 0);
    dialog->dismiss();
    letGo();
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
