#include "RQAlertView/RQAlertViewWindow.h"

#include "RQAlertView/RQAlertViewWindowsObserver.h"

void RQAlertViewWindow::setVisible(bool visible) {
  if (!visible && RQAlertViewWindowsObserver::sharedInstance()->isAboveAnother(this)) resignKeyWindow();
  UIWindow::setVisible(visible);
}
