// A button class for the screens' layouts. It adds neither state nor styling: the layout says how it looks.
#pragma once

#include "ui/controls/UIButton.h"

class LanternStyleButton : public UIButton {
  Q_OBJECT

 public:
  explicit LanternStyleButton(QWidget* parent = nullptr) : UIButton(parent) {}
  explicit LanternStyleButton(const QString& title, QWidget* parent = nullptr) : UIButton(title, parent) {}

  // Of the class, not of an instance, so no single button is styled by it.
  static void awakeFromNib() { UIButton::awakeFromNib(); }
};
