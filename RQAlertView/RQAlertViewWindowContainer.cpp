#include "RQAlertView/RQAlertViewWindowContainer.h"

#include "platform/UIWindow.h"

RQAlertViewWindowContainer& RQAlertViewWindowContainer::initWithWindow(
    const std::shared_ptr<UIWindow>& window) {
  window_ = window;
  identity_ = window.get();
  return *this;
}

RQAlertViewWindowContainer RQAlertViewWindowContainer::containerWithWindow(
    const std::shared_ptr<UIWindow>& window) {
  return RQAlertViewWindowContainer().initWithWindow(window);
}
