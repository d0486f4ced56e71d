// An on-off switch: a check box drawn as a knob that slides in a groove.
#pragma once

#include <QCheckBox>

class UISwitch : public QCheckBox {
  Q_OBJECT

 public:
  explicit UISwitch(QWidget* parent = nullptr);

  bool isOn() const { return isChecked(); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& position) const override;
};
