// The rounded ground that some controls are drawn on, the ring around the one with the focus, and a label on
// a layer.
#pragma once

#include <QColor>
#include <QLabel>

class QPainter;
class QRect;

// Lengths are logical pixels. Without a background nothing is filled, without a border width nothing is
// drawn.
struct Layer {
  qreal cornerRadius = 0;
  qreal borderWidth = 0;
  QColor backgroundColor;
  QColor borderColor = Qt::black;
};

// Fills `bounds` with the layer; the radius is at most half the smaller side. `ground` replaces the layer's
// own background where a control shows a state (pressed, hovered).
void drawLayer(QPainter& painter, const QRect& bounds, const Layer& layer, const QColor& ground);

// Draws the ring inside `bounds`. The caller asks showsFocus() first.
void drawFocusRing(QPainter& painter, const QRect& bounds, qreal cornerRadius);

// Whether a control shows that it is disabled: only when it is disabled itself. What is below a dialog is
// disabled as a whole, and the dialog's cover shows that already.
bool isDimmed(const QWidget& control);

class LayerLabel : public QLabel {
  Q_OBJECT

 public:
  explicit LayerLabel(QWidget* parent = nullptr);

  // An empty label of one line needs no font yet, and loading the fonts is the slowest step of a start.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

  void setLayer(const Layer& layer);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Layer layer_;
};
