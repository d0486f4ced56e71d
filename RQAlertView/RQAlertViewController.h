// The view controller of one dialog: shows the dialog's view in its window and lets the screen below decide
// about rotation and status bar.
#pragma once

#include "platform/UIViewController.h"

class RQAlertView;

class RQAlertViewController : public UIViewController {
  Q_OBJECT

 public:
  // Takes `view` over. The dialog keeps itself alive while it is shown; the controller only refers to it.
  RQAlertViewController(const std::shared_ptr<RQAlertView>& alertView, QWidget* view);

  std::shared_ptr<RQAlertView> alertView() const { return alertView_.lock(); }

  bool shouldAutorotate() const override;
  UIInterfaceOrientationMask supportedInterfaceOrientations() const override;
  UIStatusBarStyle preferredStatusBarStyle() const override;
  bool prefersStatusBarHidden() const override;
  UIStatusBarAnimation preferredStatusBarUpdateAnimation() const override;

  // Esc: the same as the cancel button, where there is one and it is enabled.
  void cancelOperation() override;

 private:
  // Of the application window, or null.
  static std::shared_ptr<UIViewController> currentViewController();

  std::weak_ptr<RQAlertView> alertView_;
};
