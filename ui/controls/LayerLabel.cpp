#include "ui/controls/LayerLabel.h"

#include <QPainter>

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
