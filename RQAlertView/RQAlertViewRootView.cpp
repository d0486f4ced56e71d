#include "RQAlertView/RQAlertViewRootView.h"

#include "RQAlertView/RQAlertViewBox.h"
#include "RQAlertView/RQAlertViewHelper.h"
#include "platform/EventLoop.h"
#include "platform/UIWindow.h"

#include <algorithm>
#include <utility>

#include <QMouseEvent>
#include <QPainter>

namespace {

// The pixels of the picture, across and down, that become one pixel of the blur.
constexpr int coarseness = 14;

QColor tintFor(UIBlurEffectStyle style) {
  if (style == UIBlurEffectStyle::Dark) return {0, 0, 0, 110};
  return {255, 255, 255, style == UIBlurEffectStyle::Light ? 80 : 190};
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

// A picture of `widget` as it is now, blurred and tinted as the style says.
QPixmap blurredPicture(QWidget& widget, UIBlurEffectStyle style) {
  QPixmap picture = widget.grab();
  if (picture.isNull()) return picture;
  const double ratio = picture.devicePixelRatioF();
  const QSize whole = picture.size();
  // Making it small and large again is a cheap blur.
  const QSize small(std::max(1, whole.width() / coarseness), std::max(1, whole.height() / coarseness));
  picture = picture.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                .scaled(whole, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  QPainter(&picture).fillRect(picture.rect(), tintFor(style));
  picture.setDevicePixelRatio(ratio);
  return picture;
}

}  // namespace

RQAlertViewRootView::RQAlertViewRootView(std::shared_ptr<const RQAlertViewModel> dialog,
                                         const RQAlertViewPress& press)
    : dialog_(std::move(dialog)), box_(new RQAlertViewBox(dialog_, press, this)) {
  animation_.setStartValue(0.0);
  animation_.setEndValue(1.0);
  animation_.setEasingCurve(QEasingCurve::OutCubic);
  connect(&animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    progress_ = value.toDouble();
    update();
  });
  connect(&animation_, &QVariantAnimation::finished, this, atEventBoundary([this] { finishMotion(); }));
  connect(&shift_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { box_->move(value.toPoint()); });
}

void RQAlertViewRootView::layoutSubviews() {
  shift_.stop();
  box_->layOutIn(freeRoom());
  update();
}

void RQAlertViewRootView::setKeyboardFrame(const QRect& frame, double duration, QEasingCurve::Type curve) {
  if (frame == keyboard_) return;
  keyboard_ = frame;
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
  box_->setVisible(in_);
  update();
  // Last: it may move the box again or drop the dialog.
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
  const QColor color = dialog_->appearance.coverColor;
  const double alpha = std::clamp(dialog_->appearance.coverAlpha, 0.0, 1.0);
  const double own = color.isValid() ? alpha * color.alphaF() : 0;
  return otherDimming_ + (own - otherDimming_) * coverShown();
}

void RQAlertViewRootView::paintCover(QPainter& painter) const {
  if (!coverBackdrop_.isNull()) {
    painter.setOpacity(coverShown() * dialog_->appearance.coverAlpha);
    painter.drawPixmap(rect(), coverBackdrop_);
    painter.setOpacity(1);
  }
  QColor color =
      dialog_->appearance.coverColor.isValid() ? dialog_->appearance.coverColor : QColor(Qt::black);
  color.setAlphaF(static_cast<float>(dimming()));
  painter.fillRect(rect(), color);
}

void RQAlertViewRootView::paintPicture(QPainter& painter) const {
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  const QRectF place = box_->geometry();
  if (motion_ == Motion::ChangeFrom) return paintChange(painter, between(earlierPlace_, place, progress_));
  QRectF now = place;
  const double in = coverShown();
  if (RQAlertViewHelper::comesFromBottom(*dialog_)) {
    now.translate(0, (1 - in) * (height() - place.top()));
  } else {
    const RQAlertViewAppearance& look = dialog_->appearance;
    const double away = motion_ == Motion::BringIn ? look.initialScale : look.finalScale;
    now = scaled(place, away + (1 - away) * in);
    painter.setOpacity(in);
  }
  painter.drawPixmap(now, picture_, QRectF(picture_.rect()));
}

void RQAlertViewRootView::paintChange(QPainter& painter, const QRectF& box) const {
  // The box grows or shrinks while one content fades into the other; texts keep their size.
  const double radius = dialog_->appearance.layerCornerRadius;
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
  // Fills what neither of the two covers, with nothing at the beginning and at the end.
  painter.setOpacity(std::min(1.0, 4 * progress_ * (1 - progress_)));
  painter.fillPath(outline, dialog_->appearance.backgroundColor);
  paint(earlierPicture_, 1 - progress_);
  paint(picture_, progress_);
}

void RQAlertViewRootView::takeBackdrops() {
  UIWindow* behind = RQAlertViewHelper::appWindow();
  const auto blurred = [behind](const std::optional<UIBlurEffectStyle>& style) {
    return behind && style ? blurredPicture(*behind, *style) : QPixmap();
  };
  coverBackdrop_ = blurred(dialog_->appearance.coverBlurEffect);
  box_->setBackdrop(blurred(dialog_->appearance.backgroundBlurEffect));
}

void RQAlertViewRootView::resizeEvent(QResizeEvent*) {
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
  // A touch that begins while the box moves does not count once it is in place.
  pressed_ = motion_ == Motion::None && event->button() == Qt::LeftButton &&
             !box_->geometry().contains(event->position().toPoint());
}

void RQAlertViewRootView::mouseReleaseEvent(QMouseEvent* event) {
  const bool tapped = std::exchange(pressed_, false) && event->button() == Qt::LeftButton &&
                      rect().contains(event->position().toPoint()) &&
                      !box_->geometry().contains(event->position().toPoint());
  if (tapped) emit coverTapped();
}
