// How a dialog comes, goes, gives way to a keyboard and changes into another one, looked at half-way.
#include "alert/Pictures.h"
#include "platform/UIKeyboard.h"

#include <QVariantAnimation>

namespace {

class LooksInMotion : public Pictures {
 protected:
  void SetUp() override {
    Pictures::SetUp();
    setMotionEnabled(true);
  }
  void TearDown() override {
    setMotionEnabled(false);
    for (const Dialog& dialog : shown_) {
      finish(dialog);
      dialog->dismiss();
    }
    Pictures::TearDown();
  }

  // A box in one colour.
  Dialog box(RQAlertViewStyle style) {
    const Dialog dialog = RQAlertView::alertViewWithTitle(none, "A\nB\nC\nD", style, {}, none, none);
    dialog->setBackgroundColor(telling);
    dialog->setMessageTextColor(telling);
    dialog->setLayerCornerRadius(0);
    shown_.push_back(dialog);
    return dialog;
  }

  // Stops what moves in the dialog, in so many milliseconds, at this part of its time; how far it has come
  // then.
  static double stopAt(const Dialog& dialog, double part, int milliseconds = 500) {
    for (auto* animation : dialog->view()->findChildren<QVariantAnimation*>()) {
      if (animation->state() == QAbstractAnimation::Stopped) continue;
      EXPECT_EQ(animation->duration(), milliseconds);
      animation->pause();
      animation->setCurrentTime(static_cast<int>(animation->duration() * part));
      return animation->currentValue().toDouble();
    }
    ADD_FAILURE() << "nothing moves";
    return 0;
  }
  // Lets it arrive.
  static void finish(const Dialog& dialog) {
    if (!dialog->view()) return;
    for (auto* animation : dialog->view()->findChildren<QVariantAnimation*>()) {
      if (animation->state() == QAbstractAnimation::Stopped) continue;
      animation->resume();
      animation->setCurrentTime(animation->duration());
    }
  }

  // Where anything but white is to be seen.
  static QRect extent(const Dialog& dialog) {
    const QImage picture = seen(dialog->view());
    QRect found;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        if (picture.pixelColor(x, y).green() < 250) found |= QRect(x, y, 1, 1);
      }
    }
    return found;
  }
  // How much of the telling colour there is in the middle of the box, or at a place: from 0 to 1.
  static double share(const Dialog& dialog, const QPoint& place) {
    return 1 - seenAt(dialog->view(), place).green() / 255.0;
  }

 private:
  std::vector<Dialog> shown_;
};

TEST_F(LooksInMotion, GrowOrShrinkAndFadeBetweenTheirScales) {
  const Dialog dialog = box(alertStyle);
  dialog->setInitialScale(1.3);
  dialog->setFinalScale(0.5);
  dialog->setAnimationDuration(3.5);
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
  for (const double part : {0.1, 0.3}) expectHalfWay(stopAt(dialog, part, 3500), 1.3);
  finish(dialog);
  ASSERT_EQ(dialog->state(), RQAlertViewState::Shown);
  EXPECT_EQ(extent(dialog), place);
  dialog->dismissAnimated();
  for (const double part : {0.1, 0.3}) expectHalfWay(1 - stopAt(dialog, part, 3500), 0.5);
  finish(dialog);
  EXPECT_EQ(dialog->state(), RQAlertViewState::Dismissed);
}

// How dark the screen's corner is, seen at each moment of what goes on.
TEST_F(LooksInMotion, DimTheScreenWithoutAJumpWhenOneFollowsAnother) {
  RQAlertView::appearance()->setCoverColor(QColor(0, 0, 0, 90));
  const auto corner = [] { return seenAt(UIScreen::mainScreen(), {3, 3}).lightness(); };
  const int bright = corner();
  const Dialog first = box(alertStyle);
  first->showAnimated();
  finish(first);
  const int dim = corner();
  ASSERT_LT(dim, bright - 20);
  first->dismissAnimated();
  const int going = (stopAt(first, 0.3), corner());
  EXPECT_GT(going, dim + 5);
  const Dialog second = box(sheetStyle);
  second->showAnimated();
  stopAt(second, 0);
  EXPECT_NEAR(corner(), going, 1);
  int before = corner();
  for (const double part : {0.2, 0.5, 0.8}) {
    stopAt(second, part);
    EXPECT_LE(corner(), before);
    before = corner();
  }
  finish(second);
  EXPECT_NEAR(corner(), dim, 1);
  // One that comes above another and goes again leaves it as dark as it was, at no moment brighter.
  const Dialog above = box(alertStyle);
  above->showAnimated();
  for (const double part : {0.0, 0.4}) EXPECT_NEAR((stopAt(above, part), corner()), dim, 1);
  finish(above);
  above->dismissAnimated();
  for (const double part : {0.0, 0.4, 0.9}) EXPECT_NEAR((stopAt(above, part), corner()), dim, 1);
  finish(above);
  EXPECT_FALSE(UIScreen::mainScreen()->updatesEnabled()) << "nothing is painted without a dialog";
  letGo();
  EXPECT_TRUE(UIScreen::mainScreen()->updatesEnabled());
  EXPECT_NEAR(corner(), dim, 1);
}

TEST_F(LooksInMotion, SlideASheetUpAndDown) {
  const Dialog dialog = box(sheetStyle);
  dialog->showAnimated();
  const QRect place = frameOf(dialog)->geometry();
  const auto expectHalfWay = [&](double in) {
    const QRect found = extent(dialog);
    EXPECT_NEAR(found.top(), place.top() + (1 - in) * (844 - place.top()), 1.5);
    EXPECT_EQ(found.left(), place.left());
    EXPECT_EQ(found.width(), place.width());
    EXPECT_EQ(share(dialog, {place.center().x(), found.top() + 5}), 1);
  };
  expectHalfWay(stopAt(dialog, 0.2));
  finish(dialog);
  dialog->dismissAnimated();
  expectHalfWay(1 - stopAt(dialog, 0.2));
}

TEST_F(LooksInMotion, FadeTheCoverInItsColorAndStrength) {
  const QPoint corner(3, 3);
  // Three tenths of a colour that lets half of what is behind through.
  constexpr double whole = 0.3 * 128 / 255;
  RQAlertView::appearance()->setCoverColor(QColor(255, 0, 255, 128));
  RQAlertView::appearance()->setCoverAlpha(0.3);
  // A dialog that was never shown has no cover to be taken over.
  const Dialog never = alert();
  const Dialog dialog = box(alertStyle);
  dialog->showAnimated();
  EXPECT_NEAR(share(dialog, corner), stopAt(dialog, 0.2) * whole, 0.02);
  finish(dialog);
  EXPECT_NEAR(share(dialog, corner), whole, 0.02);
}

TEST_F(LooksInMotion, ChangeTheSizeOfTheBoxIntoThatOfTheNextOne) {
  const Dialog from = showing(box(alertStyle));
  const QRect before = frameOf(from)->geometry();
  const Dialog to = box(alertStyle);
  to->setWidth(200);
  to->setMessageFont(QFont(to->messageFont().family(), 24));
  to->setAnimationDuration(2);
  from->transitionToAlertView(to);
  const QRect after = frameOf(to)->geometry();
  ASSERT_GT(after.height(), before.height() + 20);
  const double progress = stopAt(to, 0.2, 2000);
  const QRect found = extent(to);
  EXPECT_NEAR(found.width(), before.width() + (after.width() - before.width()) * progress, 2.5);
  EXPECT_NEAR(found.height(), before.height() + (after.height() - before.height()) * progress, 2.5);
}

TEST_F(LooksInMotion, GiveWayToAKeyboardInItsTimeAndOnItsCurve) {
  const Dialog dialog = showing(box(alertStyle));
  const int before = frameOf(dialog)->y();
  NSNotificationCenter::defaultCenter().postNotificationName(
      UIKeyboardWillChangeFrameNotification, nullptr,
      {{UIKeyboardFrameEndUserInfoKey, QRectF(0, 444, 390, 400)},
       {UIKeyboardAnimationDurationUserInfoKey, 7.5},
       {UIKeyboardAnimationCurveUserInfoKey, static_cast<int>(QEasingCurve::InQuad)}});
  stopAt(dialog, 0.5, 7500);
  // At half of the time a quarter of the way, which is half of what the keyboard covers.
  EXPECT_NEAR(frameOf(dialog)->y(), before - 200.0 / 4, 1);
  finish(dialog);
  EXPECT_NEAR(frameOf(dialog)->y(), before - 200, 1);
}

}  // namespace
