// The application's delegate: it keeps the window and leaves everything else to the screens.
#pragma once

#include "platform/UIApplication.h"
#include "platform/UIWindow.h"

#include <memory>
#include <utility>

class AppDelegate : public UIApplicationDelegate {
 public:
  const std::shared_ptr<UIWindow>& window() const { return window_; }
  void setWindow(std::shared_ptr<UIWindow> window) { window_ = std::move(window); }

  bool applicationDidFinishLaunchingWithOptions(UIApplication& /*application*/,
                                                const QVariantMap& /*options*/) override {
    return true;
  }

 private:
  std::shared_ptr<UIWindow> window_;
};

// The delegate with the window in which the main screen is shown.
std::unique_ptr<AppDelegate> makeAppDelegate();
