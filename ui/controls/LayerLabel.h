// A label on a layer.
#pragma once

#include "ui/controls/Layer.h"

#include <QLabel>

class LayerLabel : public QLabel {
  Q_OBJECT

 public:
  explicit LayerLabel(QWidget* parent = nullptr);

  // An empty label of one line needs no font yet, and loading the fonts is the dearest step of a start.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

  void setLayer(const Layer& layer);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Layer layer_;
};
