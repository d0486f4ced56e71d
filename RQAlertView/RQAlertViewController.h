// The view controller of one dialog: shows the dialog's view in its window and lets the screen below decide
// about rotation and status bar.
#pragma once

#include "platform/UIViewController.h"

class RQAlertView;

class RQAlertViewController : public UIViewController {
  Q_OBJECT

 public:
  // Takes ownership of `view`. The dialog keeps itself alive while it is shown; the controller refers to it
  // weakly.
  RQAlertViewController(const std::shared_ptr<RQAlertView>& alertView, QWidget* view);

  std::shared_ptr<RQAlertView> alertView() const { return alertView_.lock(); }

  bool shouldAutorotate() const override { return currentViewController()->shouldAutorotate(); }
  UIInterfaceOrientationMask supportedInterfaceOrientations() const override {
    return currentViewController()->supportedInterfaceOrientations();
  }
  UIStatusBarStyle preferredStatusBarStyle() const override {
    return currentViewController()->preferredStatusBarStyle();
  }
  bool prefersStatusBarHidden() const override { return currentViewController()->prefersStatusBarHidden(); }
  UIStatusBarAnimation preferredStatusBarUpdateAnimation() const override {
    return currentViewController()->preferredStatusBarUpdateAnimation();
  }

  // Esc: the same as the cancel button, where there is one and it is enabled.
  void cancelOperation() override;

 private:
  // On top in the application's window; a plain one where there is none.
  static std::shared_ptr<UIViewController> currentViewController();

  std::weak_ptr<RQAlertView> alertView_;
};
