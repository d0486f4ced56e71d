// A label on a layer.
#pragma once

#include "ui/Layer.h"

#include <QLabel>

class LayerLabel : public QLabel {
  Q_OBJECT

 public:
  explicit LayerLabel(QWidget* parent = nullptr);

  void setLayer(const Layer& layer);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Layer layer_;
};
