#include "ui/LayerLabel.h"

#include <QPainter>

LayerLabel::LayerLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignCenter);
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
  QLabel::paintEvent(event);
}
