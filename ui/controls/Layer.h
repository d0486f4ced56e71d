// The rounded ground that some controls are drawn on.
#pragma once

#include <QColor>

class QPainter;
class QRect;
class QWidget;

// Lengths are logical pixels. Without a background nothing is filled, without a border width nothing is
// drawn.
struct Layer {
  qreal cornerRadius = 0;
  qreal borderWidth = 0;
  QColor backgroundColor;
  QColor borderColor = Qt::black;
};

// Fills `bounds` with the layer; the radius is at most half the smaller side. `ground` stands for the layer's
// own background where a control shows a state (pressed, hovered).
void drawLayer(QPainter& painter, const QRect& bounds, const Layer& layer, const QColor& ground);

// Whether a control shows that it is disabled: only when it is so itself. What lies under a dialog is
// disabled as a whole, and the dialog's cover shows that already.
bool isDimmed(const QWidget& control);

// Whether a control shows that it has the focus: to who uses the keyboard.
bool showsFocus(const QWidget& control);
