#include "RQAlertView/RQAlertViewWindowContainer.h"

#include "platform/UIWindow.h"

RQAlertViewWindowContainer RQAlertViewWindowContainer::containerWithWindow(
    const std::shared_ptr<UIWindow>& window) {
  return RQAlertViewWindowContainer(window);
}

RQAlertViewWindowContainer::RQAlertViewWindowContainer(const std::shared_ptr<UIWindow>& window)
    : window_(window), identity_(window.get()) {}
