// The view of a dialog: the cover that dims the screen, the box, and their motion.
#pragma once

#include "RQAlertView/RQAlertViewModel.h"

#include <QEasingCurve>
#include <QVariantAnimation>

class RQAlertViewBox;

// Transparent until it is brought in. While it moves, a picture of the box moves and the box itself is out of
// reach.
class RQAlertViewRootView : public QWidget {
  Q_OBJECT

 public:
  RQAlertViewRootView(std::shared_ptr<const RQAlertViewModel> dialog, const RQAlertViewPress& press);

  RQAlertViewBox* box() const { return box_; }

  // For the present size of the window and place of the keyboard.
  void layoutSubviews();
  // The keyboard's frame in the screen's coordinates, empty for none. With a duration (seconds) the box moves
  // to its new place where motion is on.
  void setKeyboardFrame(const QRect& frame, double duration, QEasingCurve::Type curve);

  enum class Motion { None, BringIn, TakeOut, ChangeFrom };
  // Ends with `finished`, which is called exactly once: at the end, at once without a duration (seconds), or
  // by finishMotion(); never when the view is destroyed first. The cover's dimming begins or ends at that of
  // another dialog: 0 for none.
  void start(Motion motion, double otherDimming, double duration, std::function<void()> finished);
  // Brings the box in by changing it from a picture of another one, which was at `from`.
  void changeFrom(const QPixmap& picture, const QRect& from, double dimmingBefore, double duration,
                  std::function<void()> finished);
  void finishMotion();

  // The opacity of the cover at this moment, from 0 to 1.
  double dimming() const;

  QPixmap picture() const;

 signals:
  // The user tapped the cover.
  void coverTapped();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  QRect freeRoom() const;
  // From 0 to 1.
  double coverShown() const;
  void paintCover(QPainter& painter) const;
  void paintPicture(QPainter& painter) const;
  // In the middle of changeFrom(), with the box at `box`.
  void paintChange(QPainter& painter, const QRectF& box) const;
  void takeBackdrops();

  std::shared_ptr<const RQAlertViewModel> dialog_;
  RQAlertViewBox* box_;
  QRect keyboard_;

  Motion motion_ = Motion::None;
  bool in_ = false;  // nothing moves and the box is in place
  double progress_ = 0;
  // Children, so that tests can find them and turn their clocks.
  QVariantAnimation animation_{this};
  QVariantAnimation shift_{this};
  std::function<void()> finished_;
  QPixmap picture_;
  QPixmap earlierPicture_;
  QRect earlierPlace_;
  QPixmap coverBackdrop_;
  double otherDimming_ = 0;
  bool pressed_ = false;
};
