// How a dialog comes, goes, gives way to a keyboard and changes into another one, looked at half-way.
#include "alert/Pictures.h"
#include "platform/UIKeyboard.h"
#include "support/Clock.h"

#include <cmath>
#include <optional>

#include <QEasingCurve>

namespace {

class LooksInMotion : public Pictures {
 protected:
  void SetUp() override {
    Pictures::SetUp();
    setMotionEnabled(true);
    clock_.emplace();
  }
  void TearDown() override {
    turn(10'000);
    clock_.reset();
    setMotionEnabled(false);
    Pictures::TearDown();
  }

  // A box in one colour.
  static Dialog box(const QString& kind) {
    return dialogFrom(kind +
                      " title= message=A\\nB\\nC\\nD backgroundColor=magenta messageTextColor=magenta "
                      "layerCornerRadius=0");
  }
  // How far motion has come at this part of its time.
  static double eased(double part) { return QEasingCurve(QEasingCurve::OutCubic).valueForProgress(part); }
  static void turn(int milliseconds) {
    letGo();
    HeldClock::turn(milliseconds);
    letGo();
  }

  // Where anything but white is to be seen.
  static QRect extent(const Dialog& dialog) {
    return extentWhere(seen(dialog->view()), [](const QColor& pixel) { return pixel.green() < 250; });
  }
  // How much of the telling colour there is at a place: from 0 to 1.
  static double share(const Dialog& dialog, const QPoint& place) {
    return 1 - seenAt(dialog->view(), place).green() / 255.0;
  }
  static int corner() { return seenAt(UIScreen::mainScreen(), {3, 3}).lightness(); }

  static constexpr int frame = 16;  // milliseconds from one step to the next

  std::optional<HeldClock> clock_;
};

TEST_F(LooksInMotion, GrowOrShrinkAndFadeBetweenTheirScalesInTheirTime) {
  const Dialog dialog = box("alert initialScale=1.3 finalScale=0.5 animationDuration=3.5");
  dialog->showAnimated();
  const QRect place = frameOf(dialog)->geometry();
  const auto expectHalfWay = [&](double in, double scale) {
    const QRect found = extent(dialog);
    EXPECT_NEAR(found.width(), place.width() * (scale + (1 - scale) * in), 2.5);
    EXPECT_NEAR(found.height(), place.height() * (scale + (1 - scale) * in), 2.5);
    EXPECT_NEAR(found.center().x(), place.center().x(), 2);
    EXPECT_NEAR(found.center().y(), place.center().y(), 2);
    EXPECT_NEAR(share(dialog, place.center()), in, 0.02);
  };
  turn(350);
  expectHalfWay(eased(0.1), 1.3);
  turn(700);
  expectHalfWay(eased(0.3), 1.3);
  turn(2449);
  EXPECT_EQ(dialog->state(), RQAlertViewState::Showing);
  turn(frame);
  ASSERT_EQ(dialog->state(), RQAlertViewState::Shown);
  EXPECT_EQ(extent(dialog), place);
  dialog->dismissAnimated();
  turn(350);
  expectHalfWay(1 - eased(0.1), 0.5);
  turn(3149);
  EXPECT_EQ(dialog->state(), RQAlertViewState::Dismissing);
  turn(frame);
  EXPECT_EQ(dialog->state(), RQAlertViewState::Dismissed);
}

TEST_F(LooksInMotion, DimTheScreenWithoutAJumpWhenOneFollowsAnother) {
  RQAlertView::appearance()->setCoverColor(QColor(0, 0, 0, 90));
  const int bright = corner();
  const Dialog first = box("alert");
  first->showAnimated();
  turn(500);
  const int dim = corner();
  ASSERT_LT(dim, bright - 20);
  first->dismissAnimated();
  turn(150);
  const int going = corner();
  EXPECT_GT(going, dim + 5);
  const Dialog second = box("sheet");
  second->showAnimated();
  EXPECT_NEAR(corner(), going, 1);
  for (int before = going; second->state() == RQAlertViewState::Showing; before = corner()) {
    turn(100);
    EXPECT_LE(corner(), before);
  }
  EXPECT_NEAR(corner(), dim, 1);
  // One that comes above another and goes again leaves it as dark as it was, at no moment brighter.
  const Dialog above = box("alert");
  bool paintsWithoutADialog = false;
  above->setDidDismissHandler(
      [&](RQAlertView&) { paintsWithoutADialog = UIScreen::mainScreen()->updatesEnabled(); });
  for (const bool coming : {true, false}) {
    coming ? above->showAnimated() : above->dismissAnimated();
    for (const int part : {0, 200, 299, frame}) {
      turn(part);
      EXPECT_NEAR(corner(), dim, 1);
    }
  }
  EXPECT_EQ(above->state(), RQAlertViewState::Dismissed);
  EXPECT_FALSE(paintsWithoutADialog);
  EXPECT_TRUE(UIScreen::mainScreen()->updatesEnabled());
}

TEST_F(LooksInMotion, SlideASheetUpAndDown) {
  const Dialog dialog = box("sheet");
  dialog->showAnimated();
  const QRect place = frameOf(dialog)->geometry();
  const auto expectHalfWay = [&](double in) {
    const QRect found = extent(dialog);
    EXPECT_NEAR(found.top(), place.top() + (1 - in) * (844 - place.top()), 1.5);
    EXPECT_EQ(found.left(), place.left());
    EXPECT_EQ(found.width(), place.width());
    EXPECT_EQ(share(dialog, {place.center().x(), found.top() + 5}), 1);
  };
  turn(100);
  expectHalfWay(eased(0.2));
  turn(400);
  dialog->dismissAnimated();
  turn(100);
  expectHalfWay(1 - eased(0.2));
}

TEST_F(LooksInMotion, FadeTheCoverInItsColorAndStrength) {
  // Three tenths of a colour that lets half of what is behind through.
  constexpr double whole = 0.3 * 128 / 255;
  RQAlertView::appearance()->setCoverColor(QColor(255, 0, 255, 128));
  RQAlertView::appearance()->setCoverAlpha(0.3);
  // A dialog that was never shown has no cover to be taken over.
  const Dialog never = dialogFrom("alert");
  const Dialog dialog = box("alert");
  dialog->showAnimated();
  turn(100);
  EXPECT_NEAR(share(dialog, {3, 3}), eased(0.2) * whole, 0.02);
  turn(400);
  EXPECT_NEAR(share(dialog, {3, 3}), whole, 0.02);
}

TEST_F(LooksInMotion, ChangeTheSizeOfTheBoxIntoThatOfTheNextOne) {
  const Dialog from = showing(box("alert"));
  const QRect before = frameOf(from)->geometry();
  const Dialog to = box("alert width=200 messageFont=32 animationDuration=2");
  from->transitionToAlertView(to);
  const QRect after = frameOf(to)->geometry();
  ASSERT_GT(after.height(), before.height() + 20);
  turn(400);
  const QRect found = extent(to);
  EXPECT_NEAR(found.width(), before.width() + (after.width() - before.width()) * eased(0.2), 2.5);
  EXPECT_NEAR(found.height(), before.height() + (after.height() - before.height()) * eased(0.2), 2.5);
}

TEST_F(LooksInMotion, GiveWayToAKeyboardInItsTimeAndOnItsCurve) {
  const Dialog dialog = showing(box("alert"));
  const int before = frameOf(dialog)->y();
  NSNotificationCenter::defaultCenter().postNotificationName(
      UIKeyboardWillChangeFrameNotification, nullptr,
      {{UIKeyboardFrameEndUserInfoKey, QRectF(0, 444, 390, 400)},
       {UIKeyboardAnimationDurationUserInfoKey, 7.5},
       {UIKeyboardAnimationCurveUserInfoKey, static_cast<int>(QEasingCurve::InQuad)}});
  turn(3750);
  // At half of the time a quarter of the way, which is half of what the keyboard covers.
  EXPECT_NEAR(frameOf(dialog)->y(), before - 200.0 / 4, 1);
  turn(3750);
  EXPECT_NEAR(frameOf(dialog)->y(), before - 200, 1);
}

TEST_F(LooksInMotion, MoveTheBarToItsNewProgressInAQuarterOfASecond) {
  const Dialog dialog = showing("alert progress=0 progressViewProgressTintColor=magenta");
  dialog->setProgress(1, true);
  const auto shown = [&] { return extentOf(seen(frameOf(dialog))).width() / 248.0; };
  turn(125);
  EXPECT_NEAR(shown(), 0.5, 0.03);
  turn(124);
  EXPECT_LT(shown(), 1);
  turn(frame);
  EXPECT_NEAR(shown(), 1, 0.001);
}

}  // namespace
