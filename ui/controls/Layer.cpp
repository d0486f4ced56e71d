#include "ui/controls/Layer.h"

#include <algorithm>

#include <QPainter>
#include <QWidget>

void drawLayer(QPainter& painter, const QRect& bounds, const Layer& layer, const QColor& ground) {
  if (!ground.isValid() && layer.borderWidth == 0) return;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(ground.isValid() ? QBrush(ground) : QBrush(Qt::NoBrush));
  painter.setPen(layer.borderWidth == 0 ? QPen(Qt::NoPen) : QPen(layer.borderColor, layer.borderWidth));
  // The border lies inside the bounds.
  const qreal inset = layer.borderWidth / 2;
  const QRectF shape = QRectF(bounds).adjusted(inset, inset, -inset, -inset);
  const qreal radius = std::min(layer.cornerRadius, std::min(shape.width(), shape.height()) / 2);
  painter.drawRoundedRect(shape, radius, radius);
}

bool isDimmed(const QWidget& control) {
  return control.testAttribute(Qt::WA_ForceDisabled);
}

bool showsFocus(const QWidget& control) {
  return control.hasFocus() && control.window()->testAttribute(Qt::WA_KeyboardFocusChange);
}
