// Several dialogs, one above the other.
#include "RQAlertView/RQAlertViewWindowsObserver.h"
#include "alert/Dialogs.h"
#include "alert/Journal.h"

namespace {

using testing::ElementsAre;

class Stack : public Dialogs {
 protected:
  static RQAlertViewWindowsObserver& observer() { return *RQAlertViewWindowsObserver::sharedInstance(); }
};

TEST_F(Stack, CoversTheLowerDialogAndBringsItBackWithItsFocus) {
  const Dialog lower = withFields(2);
  lower->show();
  lower->textFieldsArray()[1]->setFocus();
  const Dialog upper = alert();
  EXPECT_TRUE(lower->window()->isHidden());
  upper->show();
  EXPECT_EQ(keyWindow(), upper->window().get());
  EXPECT_EQ(observer().lastWindow(), upper->window());
  EXPECT_TRUE(observer().isWindowsArrayContains(lower->window().get()));

  upper->dismiss();
  // The lower one comes back with the event loop, not before.
  EXPECT_TRUE(lower->window()->isHidden());
  letGo();
  EXPECT_FALSE(lower->window()->isHidden());
  EXPECT_EQ(keyWindow(), lower->window().get());
  EXPECT_EQ(focus(), lower->textFieldsArray()[1]);
  EXPECT_EQ(observer().lastWindow(), lower->window());
  lower->dismiss();
  letGo();
  EXPECT_EQ(observer().lastWindow(), nullptr);
  EXPECT_TRUE(observer().windowsArray().empty());
}

TEST_F(Stack, LetsAMiddleDialogGoAtOnceAndKeepsTheOthers) {
  const Dialog bottom = alert();
  bottom->show();
  const Dialog middle = alert();
  middle->show();
  const Dialog top = alert();
  top->show();
  Journal journal(*middle);
  middle->dismissAnimated(true, [&] { journal.note("completed"); });
  EXPECT_THAT(journal.take(),
              ElementsAre("handler didDismiss", "delegate didDismiss", "posted DidDismiss", "completed"));
  letGo();
  EXPECT_EQ(keyWindow(), top->window().get());
  top->dismiss();
  letGo();
  EXPECT_EQ(keyWindow(), bottom->window().get());
  bottom->dismiss();
  letGo();
  EXPECT_EQ(keyWindow(), appWindow.get());
}

TEST_F(Stack, ShowsADialogFromAHandlerOfAnother) {
  const Dialog first = alert({QStringLiteral("Next")});
  Dialog second;
  first->setActionHandler([&](RQAlertView&, std::size_t, const QString&) {
    second = alert({QStringLiteral("Done")});
    second->show();
  });
  first->show();
  tap(first, QStringLiteral("Next"));
  EXPECT_EQ(first->state(), RQAlertViewState::Dismissed);
  letGo();
  ASSERT_TRUE(second);
  EXPECT_EQ(keyWindow(), second->window().get());
  EXPECT_TRUE(frameOf(second)->isVisible());
  second->dismiss();
  letGo();
  EXPECT_EQ(keyWindow(), appWindow.get());
  EXPECT_EQ(focus(), appField);
}

TEST_F(Stack, ShowsThreeDialogsFromOneHandlerTheLastOneOnTop) {
  std::vector<Dialog> shown;
  const Dialog first = alert();
  first->setDidDismissHandler([&](RQAlertView&) {
    for (int count = 0; count < 3; ++count) {
      shown.push_back(alert());
      shown.back()->show();
    }
  });
  first->show();
  first->dismiss();
  letGo();
  ASSERT_EQ(shown.size(), 3U);
  for (auto dialog = shown.rbegin(); dialog != shown.rend(); ++dialog) {
    EXPECT_EQ(keyWindow(), (*dialog)->window().get());
    (*dialog)->dismiss();
    letGo();
  }
  EXPECT_EQ(keyWindow(), appWindow.get());
}

TEST_F(Stack, IsNotEnteredByWindowsOfOtherClasses) {
  const Dialog dialog = alert();
  dialog->show();
  const std::shared_ptr<UIWindow> other = makeUIWindow();
  other->makeKeyAndVisible();
  EXPECT_FALSE(observer().isWindowsArrayContains(other.get()));
  EXPECT_FALSE(dialog->window()->isHidden());
  // The dialog stays modal.
  letGo();
  EXPECT_EQ(keyWindow(), dialog->window().get());
  dialog->dismiss();
}

TEST_F(Stack, BringsTheLowerDialogBackWhenTheUpperOneWasNeverShown) {
  const Dialog lower = alert();
  lower->show();
  Dialog upper = alert();
  upper.reset();
  letGo();
  EXPECT_EQ(keyWindow(), lower->window().get());
  lower->dismiss();
}

TEST_F(Stack, TurnsOneDialogIntoAnother) {
  for (const bool moving : {false, true}) {
    setMotionEnabled(moving);
    const Dialog from = alert();
    Journal fromJournal(*from);
    from->show();
    const Dialog to = sheet({QStringLiteral("A")}, QStringLiteral("Cancel"));
    to->setAnimationDuration(0.05);
    Journal toJournal(*to);
    bool completed = false;
    from->transitionToAlertView(to, [&] { completed = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return completed; }));
    EXPECT_EQ(from->state(), RQAlertViewState::Dismissed);
    EXPECT_EQ(to->state(), RQAlertViewState::Shown);
    EXPECT_EQ(std::count(fromJournal.lines.begin(), fromJournal.lines.end(), "posted DidDismiss"), 1);
    EXPECT_EQ(std::count(toJournal.lines.begin(), toJournal.lines.end(), "posted DidShow"), 1);
    letGo();
    EXPECT_EQ(keyWindow(), to->window().get());
    EXPECT_TRUE(frameOf(to)->isVisible());
    setMotionEnabled(false);
    to->dismiss();
    letGo();
  }
}

}  // namespace
