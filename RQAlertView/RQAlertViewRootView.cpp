#include "RQAlertView/RQAlertViewRootView.h"

#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewBox.h"
#include "RQAlertView/RQAlertViewHelper.h"
#include "platform/EventLoop.h"
#include "platform/UIDevice.h"
#include "platform/UIWindow.h"

#include <algorithm>
#include <utility>

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>

namespace {

// Each pixel of the blur stands for this many of the picture, across and down.
constexpr int coarseness = 14;

QColor tintFor(UIBlurEffectStyle style) {
  switch (style) {
    case UIBlurEffectStyle::ExtraLight:
      return {255, 255, 255, 190};
    case UIBlurEffectStyle::Light:
      return {255, 255, 255, 80};
    case UIBlurEffectStyle::Dark:
      return {0, 0, 0, 110};
  }
  return Qt::transparent;
}

int milliseconds(double seconds) {
  return qRound(std::max(seconds, 0.0) * 1000);
}

QRectF between(const QRectF& from, const QRectF& to, double progress) {
  const auto mix = [progress](double a, double b) { return a + (b - a) * progress; };
  return {mix(from.x(), to.x()), mix(from.y(), to.y()), mix(from.width(), to.width()),
          mix(from.height(), to.height())};
}

QRectF scaled(const QRectF& rect, double scale) {
  QRectF result(0, 0, rect.width() * scale, rect.height() * scale);
  result.moveCenter(rect.center());
  return result;
}

}  // namespace

QPixmap blurredPicture(QWidget& widget, UIBlurEffectStyle style) {
  QPixmap picture = widget.grab();
  if (picture.isNull()) return picture;
  const double ratio = picture.devicePixelRatioF();
  const QSize whole = picture.size();
  // Making it small and large again is a blur that costs next to nothing.
  const QSize small(std::max(1, whole.width() / coarseness), std::max(1, whole.height() / coarseness));
  picture = picture.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                .scaled(whole, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  QPainter(&picture).fillRect(picture.rect(), tintFor(style));
  picture.setDevicePixelRatio(ratio);
  return picture;
}

RQAlertViewRootView::RQAlertViewRootView(const RQAlertView& alertView) : alertView_(alertView) {
  animation_.setStartValue(0.0);
  animation_.setEndValue(1.0);
  animation_.setEasingCurve(QEasingCurve::OutCubic);
  connect(&animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    progress_ = value.toDouble();
    update();
  });
  connect(&animation_, &QVariantAnimation::finished, this, atEventBoundary([this] { finishMotion(); }));
  connect(&shift_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    if (box_) box_->move(value.toPoint());
  });
}

void RQAlertViewRootView::setBox(RQAlertViewBox* box) {
  box_ = box;
  box_->hide();
}

void RQAlertViewRootView::layoutSubviews() {
  shift_.stop();
  if (box_) box_->layOutIn(freeRoom());
  update();
}

void RQAlertViewRootView::setKeyboardFrame(const QRect& frame, double duration, QEasingCurve::Type curve) {
  if (frame == keyboard_) return;
  keyboard_ = frame;
  if (!box_) return;
  const QPoint before = box_->pos();
  layoutSubviews();
  const QPoint after = box_->pos();
  if (duration <= 0 || !motionEnabled() || !box_->isVisible() || before == after) return;
  box_->move(before);
  shift_.setStartValue(before);
  shift_.setEndValue(after);
  shift_.setDuration(milliseconds(duration));
  shift_.setEasingCurve(curve);
  shift_.start();
}

QRect RQAlertViewRootView::freeRoom() const {
  QRect room = rect();
  if (!keyboard_.isEmpty() && keyboard_.top() > room.top() && keyboard_.top() < room.bottom()) {
    room.setBottom(keyboard_.top() - 1);
  }
  return room;
}

void RQAlertViewRootView::bringIn(double dimmingBefore, double duration, std::function<void()> finished) {
  start(Motion::BringIn, dimmingBefore, duration, std::move(finished));
}

void RQAlertViewRootView::takeOut(double dimmingAfter, double duration, std::function<void()> finished) {
  start(Motion::TakeOut, dimmingAfter, duration, std::move(finished));
}

void RQAlertViewRootView::changeFrom(const QPixmap& picture, const QRect& from, double dimmingBefore,
                                     double duration, std::function<void()> finished) {
  earlierPicture_ = picture;
  earlierPlace_ = from;
  start(Motion::ChangeFrom, dimmingBefore, duration, std::move(finished));
}

void RQAlertViewRootView::start(Motion motion, double otherDimming, double duration,
                                std::function<void()> finished) {
  finishMotion();
  finished_ = std::move(finished);
  motion_ = motion;
  otherDimming_ = otherDimming;
  progress_ = 0;
  if (motion != Motion::TakeOut) takeBackdrops();
  if (duration > 0 && motionEnabled() && isVisible()) {
    picture_ = picture();
    box_->hide();
    animation_.setDuration(milliseconds(duration));
    animation_.start();
    update();
  } else {
    finishMotion();
  }
}

void RQAlertViewRootView::finishMotion() {
  if (motion_ == Motion::None) return;
  in_ = std::exchange(motion_, Motion::None) != Motion::TakeOut;
  animation_.stop();
  picture_ = {};
  earlierPicture_ = {};
  if (box_) box_->setVisible(in_);
  update();
  // Last: what is called may move the box again or drop the dialog.
  if (const std::function<void()> finished = std::exchange(finished_, nullptr)) finished();
}

QPixmap RQAlertViewRootView::picture() const {
  return box_->grab();
}

void RQAlertViewRootView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintCover(painter);
  if (motion_ != Motion::None) paintPicture(painter);
}

double RQAlertViewRootView::coverShown() const {
  if (motion_ == Motion::None) return in_ ? 1 : 0;
  return motion_ == Motion::TakeOut ? 1 - progress_ : progress_;
}

double RQAlertViewRootView::dimming() const {
  const QColor color = alertView_.coverColor();
  const double own = std::clamp(alertView_.coverAlpha(), 0.0, 1.0) * (color.isValid() ? color.alphaF() : 0);
  const double other = motion_ == Motion::None ? 0 : otherDimming_;
  return other + (own - other) * coverShown();
}

void RQAlertViewRootView::paintCover(QPainter& painter) const {
  if (!coverBackdrop_.isNull()) {
    painter.setOpacity(std::clamp(coverShown() * alertView_.coverAlpha(), 0.0, 1.0));
    painter.drawPixmap(rect(), coverBackdrop_);
    painter.setOpacity(1);
  }
  QColor color = alertView_.coverColor().isValid() ? alertView_.coverColor() : QColor(Qt::black);
  color.setAlphaF(static_cast<float>(std::clamp(dimming(), 0.0, 1.0)));
  if (color.alpha() > 0) painter.fillRect(rect(), color);
}

void RQAlertViewRootView::paintPicture(QPainter& painter) const {
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  const QRectF place = box_->geometry();
  QRectF now = place;
  double opacity = 1;
  const bool fromBottom = RQAlertViewHelper::comesFromBottom(alertView_);
  switch (motion_) {
    case Motion::BringIn:
    case Motion::TakeOut: {
      const double in = motion_ == Motion::BringIn ? progress_ : 1 - progress_;
      if (fromBottom) {
        now.translate(0, (1 - in) * (height() - place.top()));
      } else {
        const double away = motion_ == Motion::BringIn ? alertView_.initialScale() : alertView_.finalScale();
        now = scaled(place, away + (1 - away) * in);
        opacity = in;
      }
      break;
    }
    case Motion::ChangeFrom:
      paintChange(painter, between(earlierPlace_, place, progress_));
      return;
    case Motion::None:
      return;
  }
  painter.setOpacity(opacity);
  painter.drawPixmap(now, picture_, QRectF(picture_.rect()));
}

void RQAlertViewRootView::paintChange(QPainter& painter, const QRectF& box) const {
  // The box grows or shrinks while one content fades into the other; texts keep their size meanwhile.
  const double radius = alertView_.layerCornerRadius();
  QPainterPath outline;
  outline.addRoundedRect(box, radius, radius);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setClipPath(outline);
  const auto paint = [&painter, &box](const QPixmap& picture, double opacity) {
    QRectF whole(QPointF(), picture.deviceIndependentSize());
    whole.moveCenter(box.center());
    painter.setOpacity(opacity);
    painter.drawPixmap(whole.topLeft(), picture);
  };
  paint(earlierPicture_, 1 - progress_);
  // What neither of the two covers; none of it at the beginning and at the end.
  painter.setOpacity(std::min(1.0, 4 * progress_ * (1 - progress_)));
  painter.fillPath(outline, alertView_.backgroundColor());
  paint(earlierPicture_, 1 - progress_);
  paint(picture_, progress_);
}

void RQAlertViewRootView::takeBackdrops() {
  UIWindow* behind = RQAlertViewHelper::appWindow();
  const auto blurred = [behind](const std::optional<UIBlurEffectStyle>& style) {
    return behind && style ? blurredPicture(*behind, *style) : QPixmap();
  };
  coverBackdrop_ = blurred(alertView_.coverBlurEffect());
  if (box_) box_->setBackdrop(blurred(alertView_.backgroundBlurEffect()));
}

void RQAlertViewRootView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  // Before the show it is all laid out once.
  if (!in_ && motion_ == Motion::None) return;
  takeBackdrops();
  layoutSubviews();
  if (motion_ != Motion::None) picture_ = picture();
}

void RQAlertViewRootView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LayoutDirectionChange && (in_ || motion_ != Motion::None)) layoutSubviews();
}

void RQAlertViewRootView::mousePressEvent(QMouseEvent* event) {
  // A touch that begins while the box moves is not kept for when it is in place.
  pressed_ = motion_ == Motion::None && event->button() == Qt::LeftButton &&
             !box_->geometry().contains(event->position().toPoint());
}

void RQAlertViewRootView::mouseReleaseEvent(QMouseEvent* event) {
  const bool tapped = std::exchange(pressed_, false) && event->button() == Qt::LeftButton &&
                      rect().contains(event->position().toPoint()) &&
                      !box_->geometry().contains(event->position().toPoint());
  if (tapped) emit coverTapped();
}
