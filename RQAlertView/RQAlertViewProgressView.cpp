#include "RQAlertView/RQAlertViewProgressView.h"

#include "RQAlertView/RQAlertViewMetrics.h"
#include "platform/UIDevice.h"

#include <algorithm>
#include <cmath>

#include <QPainter>

namespace {

constexpr int moveMilliseconds = 250;

void paintBar(QPainter& painter, const QRectF& bar, const QColor& color, const QPixmap& image) {
  if (!image.isNull()) {
    painter.drawPixmap(bar, image, QRectF(image.rect()));
    return;
  }
  painter.setBrush(color);
  painter.drawRoundedRect(bar, bar.height() / 2, bar.height() / 2);
}

}  // namespace

RQAlertViewProgressView::RQAlertViewProgressView(QWidget* parent) : QProgressBar(parent) {
  setRange(0, 100);
  setTextVisible(false);
  setAccessibleName(tr("Progress"));
  animation_.setDuration(moveMilliseconds);
  connect(&animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    shown_ = value.toDouble();
    update();
  });
}

void RQAlertViewProgressView::setProgress(double progress, bool animated) {
  // The comparison also turns what is no number into none.
  progress_ = progress;
  setValue(static_cast<int>(std::lround(progress_ * 100)));
  animation_.stop();
  if (animated && motionEnabled() && isVisible()) {
    animation_.setStartValue(shown_);
    animation_.setEndValue(progress_);
    animation_.start();
  } else {
    shown_ = progress_;
    update();
  }
}

void RQAlertViewProgressView::setColors(const QColor& progress, const QColor& track) {
  progressColor_ = progress;
  trackColor_ = track;
  update();
}

void RQAlertViewProgressView::setImages(const QPixmap& progress, const QPixmap& track) {
  progressImage_ = progress;
  trackImage_ = track;
  updateGeometry();
  update();
}

QSize RQAlertViewProgressView::sizeHint() const {
  const double image =
      std::max(progressImage_.deviceIndependentSize().height(), trackImage_.deviceIndependentSize().height());
  return {0, std::max(RQAlertViewMetrics::progressBarHeight, static_cast<int>(std::ceil(image)))};
}

void RQAlertViewProgressView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const QRectF whole = rect();
  paintBar(painter, whole, trackColor_, trackImage_);
  if (shown_ <= 0) return;
  QRectF done = whole;
  done.setWidth(std::max(whole.height(), whole.width() * shown_));
  if (layoutDirection() == Qt::RightToLeft) done.moveRight(whole.right());
  paintBar(painter, done, progressColor_, progressImage_);
}
