// Several dialogs, one above the other.
#include "RQAlertView/RQAlertViewWindowsObserver.h"
#include "alert/Dialogs.h"
#include "alert/Journal.h"
#include "platform/ApplicationStyle.h"

#include <functional>

namespace {

using testing::ElementsAre;

class Stack : public Dialogs {
 protected:
  static RQAlertViewWindowsObserver& observer() { return *RQAlertViewWindowsObserver::sharedInstance(); }
};

TEST_F(Stack, CoversTheLowerDialogAndBringsItBackWithItsFocus) {
  const Dialog lower = showing(withFields(2));
  lower->textFieldsArray()[1]->setFocus();
  const Dialog upper = alert();
  EXPECT_TRUE(lower->window()->isHidden());
  upper->show();
  EXPECT_EQ(keyWindow(), upper->window().get());
  EXPECT_EQ(observer().lastWindow(), upper->window());
  EXPECT_TRUE(observer().isWindowsArrayContains(lower->window().get()));

  upper->dismiss();
  // The lower one comes back with the event loop, not before, and nothing else takes its input meanwhile.
  EXPECT_TRUE(lower->window()->isHidden());
  EXPECT_EQ(keyWindow(), nullptr);
  EXPECT_EQ(focus(), nullptr);
  letGo();
  EXPECT_FALSE(lower->window()->isHidden());
  EXPECT_EQ(keyWindow(), lower->window().get());
  EXPECT_EQ(focus(), lower->textFieldsArray()[1]);
  EXPECT_EQ(observer().lastWindow(), lower->window());
  close(lower);
  EXPECT_EQ(observer().lastWindow(), nullptr);
  EXPECT_TRUE(observer().windowsArray().empty());
}

TEST_F(Stack, KeepsADialogCoveredWhateverChangesInIt) {
  using Change = std::function<void(RQAlertView&)>;
  const std::vector<Change> changes{
      [](RQAlertView& dialog) { dialog.setTitleTextColor(Qt::green); },
      [](RQAlertView& dialog) { dialog.setButtonsFont(systemFontOfSize(60)); },
      [](RQAlertView& dialog) { dialog.setProgressLabelText("Nearly done"); },
      [](RQAlertView& dialog) { dialog.setOneRowOneButton(true); },
      [](RQAlertView& dialog) {
        dialog.setButtonPropertiesAtIndex(0, [](auto& properties) { properties.numberOfLines = 0; });
      },
      [](RQAlertView& dialog) { dialog.setCancelButtonEnabled(false); },
      [](RQAlertView& dialog) { dialog.setButtonsEnabled(false); },
      [](RQAlertView& dialog) { dialog.setWindowLevel(RQAlertViewWindowLevel::BelowStatusBar); },
      [](RQAlertView&) { UIScreen::mainScreen()->resize(820, 1180); },
      [](RQAlertView&) { UIApplication::setLayoutDirection(Qt::RightToLeft); },
  };
  // Covered by one that was made later, and still in sight below one that was made earlier.
  for (const bool madeLater : {true, false}) {
    for (const Change& change : changes) {
      SCOPED_TRACE(std::to_string(&change - changes.data()) + (madeLater ? "" : ", in sight"));
      Dialog upper = madeLater ? nullptr : alert();
      const Dialog lower = showing(waiting("Wait", {"A"}, "Cancel"));
      if (!upper) upper = alert();
      upper->show();
      const QWidget* focused = focus();
      ASSERT_TRUE(upper->window()->isAncestorOf(focused));

      change(*lower);
      QCoreApplication::processEvents();
      EXPECT_EQ(lower->window()->isHidden(), madeLater);
      EXPECT_EQ(keyWindow(), upper->window().get());
      EXPECT_EQ(UIScreen::mainScreen()->windows().back(), upper->window().get());
      EXPECT_EQ(focus(), focused);
      EXPECT_FALSE(lower->window()->isEnabled());

      close(upper);
      EXPECT_EQ(keyWindow(), lower->window().get());
      EXPECT_TRUE(frameOf(lower)->isVisible());
      EXPECT_TRUE(frameOf(lower)->isAncestorOf(focus()));
      close(lower);
      UIApplication::setLayoutDirection(Qt::LeftToRight);
      resize(390, 844);
    }
  }
}

TEST_F(Stack, GivesTheFocusToADialogThatWasCoveredWhileItCame) {
  setMotionEnabled(true);
  const Dialog lower = withFields(2);
  lower->setAnimationDuration(0.05);
  lower->showAnimated();
  const Dialog upper = showing(alert());
  const QWidget* focused = focus();
  ASSERT_TRUE(becomes(lower, RQAlertViewState::Shown));
  EXPECT_EQ(focus(), focused);
  close(upper);
  EXPECT_EQ(focus(), lower->textFieldsArray()[0]);
}

TEST_F(Stack, LetsAMiddleDialogGoAtOnceAndKeepsTheOthers) {
  const Dialog bottom = showing(alert());
  const Dialog middle = showing(alert());
  const Dialog top = showing(alert());
  Journal journal(*middle);
  middle->dismissAnimated(true, [&] { journal.note("completed"); });
  EXPECT_THAT(journal.take(),
              ElementsAre("handler DidDismiss", "delegate DidDismiss", "posted DidDismiss", "completed"));
  letGo();
  EXPECT_EQ(keyWindow(), top->window().get());
  close(top);
  EXPECT_EQ(keyWindow(), bottom->window().get());
  close(bottom);
  EXPECT_EQ(keyWindow(), appWindow.get());
}

TEST_F(Stack, GivesTheInputBackWhereNoDialogIsLeftToComeBack) {
  const Dialog lower = showing(alert());
  const Dialog upper = showing(alert());
  upper->dismiss();
  lower->dismiss();
  letGo();
  EXPECT_EQ(keyWindow(), appWindow.get());
  EXPECT_EQ(focus(), appField);
  // A window that is hidden for a while keeps the one below it away.
  const Dialog kept = showing(alert());
  const Dialog hidden = showing(alert());
  hidden->window()->setHidden(true);
  letGo();
  EXPECT_EQ(keyWindow(), appWindow.get());
  EXPECT_TRUE(kept->window()->isHidden());
}

TEST_F(Stack, ShowsThreeDialogsFromAHandlerOfAnotherTheLastOneOnTop) {
  std::vector<Dialog> shown;
  const auto showThree = [&] {
    for (int count = 0; count < 3; ++count) {
      shown.push_back(alert());
      shown.back()->show();
    }
  };
  for (const bool answering : {true, false}) {
    const Dialog first = alert({"Next"});
    if (answering) {
      first->setActionHandler([&](RQAlertView&, std::size_t, const QString&) { showThree(); });
    } else {
      first->setDidDismissHandler([&](RQAlertView&) { showThree(); });
    }
    first->show();
    tap(first, "Next");
    EXPECT_EQ(first->state(), RQAlertViewState::Dismissed);
    letGo();
    ASSERT_EQ(shown.size(), 3U);
    for (; !shown.empty(); shown.pop_back()) {
      EXPECT_EQ(keyWindow(), shown.back()->window().get());
      EXPECT_TRUE(frameOf(shown.back())->isVisible());
      close(shown.back());
    }
    EXPECT_EQ(keyWindow(), appWindow.get());
    EXPECT_EQ(focus(), appField);
  }
}

TEST_F(Stack, IsNotEnteredByWindowsOfOtherClasses) {
  const Dialog dialog = showing(alert());
  const std::shared_ptr<UIWindow> other = makeUIWindow();
  other->makeKeyAndVisible();
  EXPECT_FALSE(observer().isWindowsArrayContains(other.get()));
  EXPECT_FALSE(dialog->window()->isHidden());
  // The dialog stays modal.
  letGo();
  EXPECT_EQ(keyWindow(), dialog->window().get());
}

TEST_F(Stack, BringsTheLowerDialogBackWhenTheUpperOneWasNeverShown) {
  const Dialog lower = showing(alert());
  const std::weak_ptr<RQAlertView> upper = alert();
  EXPECT_TRUE(upper.expired());
  letGo();
  EXPECT_EQ(keyWindow(), lower->window().get());
}

TEST_F(Stack, TurnsOneDialogIntoAnother) {
  for (const bool moving : {false, true}) {
    setMotionEnabled(moving);
    const Dialog from = showing(alert());
    Journal fromJournal(*from);
    const Dialog to = sheet({"A"}, "Cancel");
    to->setAnimationDuration(0.05);
    Journal toJournal(*to);
    bool completed = false;
    from->transitionToAlertView(to, [&] { completed = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return completed; }));
    EXPECT_EQ(from->state(), RQAlertViewState::Dismissed);
    EXPECT_EQ(to->state(), RQAlertViewState::Shown);
    EXPECT_THAT(fromJournal.take(),
                ElementsAre("handler WillDismiss", "delegate WillDismiss", "posted WillDismiss",
                            "handler DidDismiss", "delegate DidDismiss", "posted DidDismiss"));
    EXPECT_EQ(std::count(toJournal.lines.begin(), toJournal.lines.end(), "posted WillShow"), 1);
    EXPECT_EQ(std::count(toJournal.lines.begin(), toJournal.lines.end(), "posted DidShow"), 1);
    letGo();
    EXPECT_EQ(keyWindow(), to->window().get());
    EXPECT_TRUE(frameOf(to)->isVisible());
    setMotionEnabled(false);
    close(to);
  }
}

TEST_F(Stack, ShowsTheOtherDialogAsUsualWhereThereIsNothingToTurn) {
  const Dialog never = alert();
  const Dialog other = alert({"Other"});
  never->transitionToAlertView(never);
  never->transitionToAlertView(nullptr);
  EXPECT_EQ(never->state(), RQAlertViewState::Made);
  never->transitionToAlertView(other);
  EXPECT_EQ(never->state(), RQAlertViewState::Made);
  EXPECT_EQ(other->state(), RQAlertViewState::Shown);
  EXPECT_EQ(keyWindow(), other->window().get());
  // Into one that is shown already, or has gone, nothing turns.
  const Dialog dialog = showing(alert());
  dialog->transitionToAlertView(other);
  EXPECT_EQ(dialog->state(), RQAlertViewState::Shown);
  close(other);
  dialog->transitionToAlertView(other);
  EXPECT_EQ(dialog->state(), RQAlertViewState::Shown);
}

TEST_F(Stack, ShowsTheOtherDialogOnceWhereADidShowReportDismissesTheFirst) {
  setMotionEnabled(true);
  for (const bool covered : {false, true}) {
    SCOPED_TRACE(covered);
    Dialog other = covered ? nullptr : alert();
    const Dialog first = alert();
    first->setAnimationDuration(30);
    Journal journal(*first);
    first->setDidShowHandler([](RQAlertView& self) { self.dismissAnimated(); });
    first->showAnimated();
    if (!other) other = alert();
    other->setAnimationDuration(0.02);
    bool completed = false;
    first->transitionToAlertView(other, [&] { completed = true; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return completed; }));
    EXPECT_EQ(other->state(), RQAlertViewState::Shown);
    EXPECT_EQ(std::count(journal.lines.begin(), journal.lines.end(), "posted WillDismiss"), covered ? 0 : 1);
    setMotionEnabled(false);
    other->dismiss();
    delete first->window().get();
    letGo();
    setMotionEnabled(true);
  }
}

}  // namespace
