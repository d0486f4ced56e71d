#include "RQAlertView/RQAlertViewController.h"

#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewHelper.h"
#include "platform/UIWindow.h"

RQAlertViewController::RQAlertViewController(const std::shared_ptr<RQAlertView>& alertView, QWidget* view)
    : alertView_(alertView) {
  setView(view);
}

// The controller below, or null.
std::shared_ptr<UIViewController> RQAlertViewController::currentViewController() {
  const UIWindow* window = RQAlertViewHelper::appWindow();
  return window ? window->topViewController() : nullptr;
}

bool RQAlertViewController::shouldAutorotate() const {
  const auto below = currentViewController();
  return below ? below->shouldAutorotate() : UIViewController::shouldAutorotate();
}

UIInterfaceOrientationMask RQAlertViewController::supportedInterfaceOrientations() const {
  const auto below = currentViewController();
  return below ? below->supportedInterfaceOrientations() : UIViewController::supportedInterfaceOrientations();
}

UIStatusBarStyle RQAlertViewController::preferredStatusBarStyle() const {
  const auto below = currentViewController();
  return below ? below->preferredStatusBarStyle() : UIViewController::preferredStatusBarStyle();
}

bool RQAlertViewController::prefersStatusBarHidden() const {
  const auto below = currentViewController();
  return below ? below->prefersStatusBarHidden() : UIViewController::prefersStatusBarHidden();
}

UIStatusBarAnimation RQAlertViewController::preferredStatusBarUpdateAnimation() const {
  const auto below = currentViewController();
  return below ? below->preferredStatusBarUpdateAnimation()
               : UIViewController::preferredStatusBarUpdateAnimation();
}

void RQAlertViewController::cancelOperation() {
  const std::shared_ptr<RQAlertView> alertView = alertView_.lock();
  if (alertView && !alertView->cancelButtonTitle().isNull() && alertView->cancelButtonEnabled() &&
      alertView->state() == RQAlertViewState::Shown) {
    alertView->forceCancel();
  }
}
