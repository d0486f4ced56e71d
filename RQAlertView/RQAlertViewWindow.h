// The window of one dialog. The windows observer knows such windows by "Alert" in the class name.
#pragma once

#include "platform/UIWindow.h"

class RQAlertViewWindow : public UIWindow {
  Q_OBJECT

 public:
  using UIWindow::UIWindow;
};
