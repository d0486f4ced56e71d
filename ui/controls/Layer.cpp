#include "ui/controls/Layer.h"

#include "ui/controls/Looks.h"

#include <algorithm>

#include <QPainter>

void drawLayer(QPainter& painter, const QRect& bounds, const Layer& layer, const QColor& ground) {
  if (!ground.isValid() && layer.borderWidth == 0) return;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(ground.isValid() ? QBrush(ground) : QBrush(Qt::NoBrush));
  painter.setPen(layer.borderWidth == 0 ? QPen(Qt::NoPen) : QPen(layer.borderColor, layer.borderWidth));
  // The border is inside the bounds.
  const qreal inset = layer.borderWidth / 2;
  const QRectF shape = QRectF(bounds).adjusted(inset, inset, -inset, -inset);
  const qreal radius = std::min(layer.cornerRadius, std::min(shape.width(), shape.height()) / 2);
  painter.drawRoundedRect(shape, radius, radius);
}

void drawFocusRing(QPainter& painter, const QRect& bounds, qreal cornerRadius) {
  drawLayer(painter, bounds, {cornerRadius, metrics::focusRingWidth, QColor(), colours::focusRing}, QColor());
}

bool isDimmed(const QWidget& control) {
  return control.testAttribute(Qt::WA_ForceDisabled);
}

LayerLabel::LayerLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignCenter);
}

QSize LayerLabel::sizeHint() const {
  return text().isEmpty() ? QSize(0, 0) : QLabel::sizeHint();
}

void LayerLabel::setLayer(const Layer& layer) {
  layer_ = layer;
  update();
}

void LayerLabel::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(this);
    drawLayer(painter, rect(), layer_, layer_.backgroundColor);
  }
  if (!text().isEmpty()) QLabel::paintEvent(event);
}
