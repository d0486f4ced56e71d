#include "RQAlertView/RQAlertViewController.h"

#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewHelper.h"
#include "platform/UIWindow.h"

RQAlertViewController::RQAlertViewController(const std::shared_ptr<RQAlertView>& alertView, QWidget* view)
    : alertView_(alertView) {
  setView(view);
}

std::shared_ptr<UIViewController> RQAlertViewController::currentViewController() {
  const UIWindow* window = RQAlertViewHelper::appWindow();
  const auto below = window ? window->topViewController() : nullptr;
  return below ? below : std::make_shared<UIViewController>();
}

void RQAlertViewController::cancelOperation() {
  const std::shared_ptr<RQAlertView> alertView = alertView_.lock();
  if (alertView && !alertView->cancelButtonTitle().isNull() && alertView->cancelButtonEnabled() &&
      alertView->state() == RQAlertViewState::Shown) {
    alertView->forceCancel();
  }
}
