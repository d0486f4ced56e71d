// An entry of the windows observer's stack: holds one window without keeping it.
#pragma once

#include <memory>

class UIWindow;

class RQAlertViewWindowContainer {
 public:
  RQAlertViewWindowContainer() = default;
  RQAlertViewWindowContainer& initWithWindow(const std::shared_ptr<UIWindow>& window);
  static RQAlertViewWindowContainer containerWithWindow(const std::shared_ptr<UIWindow>& window);

  // Null once the window has been released.
  std::shared_ptr<UIWindow> window() const { return window_.lock(); }
  // Whether this is, or was, the entry of `window`.
  bool holds(const UIWindow* window) const { return identity_ == window; }

 private:
  std::weak_ptr<UIWindow> window_;
  const UIWindow* identity_ = nullptr;  // compared only: the window may be gone
};
