#include "platform/PresentationLayer.h"

#include "platform/EventBoundary.h"
#include "platform/Motion.h"

#include <utility>

#include <QResizeEvent>

namespace {

constexpr int slideMilliseconds = 350;

}  // namespace

PresentationLayer::PresentationLayer(QWidget* parent, QWidget* view) : QWidget(parent), view_(view) {
  setGeometry(parent->rect());
  view->setParent(this);
  place(0);
  view->show();
  animation_.setDuration(slideMilliseconds);
  animation_.setEasingCurve(QEasingCurve::OutCubic);
  connect(&animation_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { place(value.toDouble()); });
  connect(&animation_, &QVariantAnimation::finished, this, atEventBoundary([this] { finish(); }));
}

void PresentationLayer::slide(double from, double to, bool animated, std::function<void()> finished) {
  finish();
  finished_ = std::move(finished);
  animation_.setStartValue(from);
  animation_.setEndValue(to);
  if (animated && motionEnabled() && isVisible()) {
    place(from);
    animation_.start();
  } else {
    finish();
  }
}

void PresentationLayer::finish() {
  if (!finished_) return;
  // The end value first: what is called may slide the layer anew or drop it.
  const std::function<void()> finished = std::exchange(finished_, nullptr);
  animation_.stop();
  place(animation_.endValue().toDouble());
  finished();
}

void PresentationLayer::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  place(fraction_);
}

void PresentationLayer::place(double fraction) {
  fraction_ = fraction;
  if (view_) view_->setGeometry(rect().translated(0, qRound(fraction * height())));
}
