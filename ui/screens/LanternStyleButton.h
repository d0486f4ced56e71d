// A button class for the screens' layouts. It adds neither state nor styling: the layout says how it looks.
#pragma once

#include "ui/controls/UIButton.h"

class LanternStyleButton : public UIButton {
  Q_OBJECT

 public:
  using UIButton::UIButton;

  // Of the class, not of an instance, so no single button is styled by it.
  static void awakeFromNib() { UIButton::awakeFromNib(); }
};
