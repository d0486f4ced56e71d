#include "platform/UIActivityIndicatorView.h"

#include "platform/UIScreen.h"

#include <QPainter>

namespace {

constexpr int spokes = 12;
constexpr int stepMilliseconds = 83;
constexpr int largeSide = 37;
constexpr int smallSide = 20;

}  // namespace

UIActivityIndicatorView::UIActivityIndicatorView(UIActivityIndicatorViewStyle style, QWidget* parent)
    : QWidget(parent), style_(style) {
  setAccessibleName(tr("In progress"));
  timer_.setInterval(stepMilliseconds);
  connect(&timer_, &QTimer::timeout, this, [this] {
    step_ = (step_ + 1) % spokes;
    update();
  });
}

void UIActivityIndicatorView::setColor(const QColor& color) {
  color_ = color;
  update();
}

QColor UIActivityIndicatorView::color() const {
  if (color_.isValid()) return color_;
  return style_ == UIActivityIndicatorViewStyle::Gray ? QColor(Qt::gray) : QColor(Qt::white);
}

void UIActivityIndicatorView::setActivityIndicatorViewStyle(UIActivityIndicatorViewStyle style) {
  style_ = style;
  update();
}

QSize UIActivityIndicatorView::sizeHint() const {
  const int side = style_ == UIActivityIndicatorViewStyle::WhiteLarge ? largeSide : smallSide;
  return {side, side};
}

void UIActivityIndicatorView::paintEvent(QPaintEvent*) {
  const double side = std::min(width(), height());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(width() / 2.0, height() / 2.0);
  painter.setPen(Qt::NoPen);
  const QRectF spoke(-side * 0.04, -side * 0.48, side * 0.08, side * 0.24);
  for (int index = 0; index < spokes; ++index) {
    // The brightest spoke leads, those behind it fade away.
    const int behind = (step_ - index + spokes) % spokes;
    QColor faded = color();
    faded.setAlphaF(static_cast<float>(color().alphaF() * std::max(0.2, 1.0 - behind / 10.0)));
    painter.setBrush(faded);
    painter.drawRoundedRect(spoke, spoke.width() / 2, spoke.width() / 2);
    painter.rotate(360.0 / spokes);
  }
}

void UIActivityIndicatorView::showEvent(QShowEvent*) {
  if (motionEnabled()) timer_.start();
}

void UIActivityIndicatorView::hideEvent(QHideEvent*) {
  timer_.stop();
}
