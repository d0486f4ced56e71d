// How dialogs follow each other, change into one another and give way to a keyboard, looked at half-way; how
// one comes and goes is in looks.txt.
#include "alert/Pictures.h"
#include "platform/UIKeyboard.h"
#include "support/Clock.h"

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
  static int corner() { return seenAt(UIScreen::mainScreen(), {3, 3}).lightness(); }

  static constexpr int frame = 16;  // milliseconds from one step to the next

  std::optional<HeldClock> clock_;
};

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

}  // namespace
