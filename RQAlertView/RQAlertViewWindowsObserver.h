// The windows of dialogs and their stack: a newer dialog covers the one below it, which comes back when the
// newer one goes.
#pragma once

#include "platform/UIWindow.h"

#include <memory>
#include <vector>

struct NSNotification;

// The window of one dialog. The observer recognises such windows by "Alert" in the class name.
class RQAlertViewWindow : public UIWindow {
  Q_OBJECT

 public:
  using UIWindow::UIWindow;
};

// An entry of the stack: holds one window weakly.
class RQAlertViewWindowContainer {
 public:
  static RQAlertViewWindowContainer containerWithWindow(const std::shared_ptr<UIWindow>& window) {
    return RQAlertViewWindowContainer().initWithWindow(window);
  }
  RQAlertViewWindowContainer& initWithWindow(const std::shared_ptr<UIWindow>& window) {
    window_ = window;
    identity_ = window.get();
    return *this;
  }

  // Null once the window has been released.
  std::shared_ptr<UIWindow> window() const { return window_.lock(); }
  // Whether this is, or was, the entry of `window`.
  bool holds(const UIWindow* window) const { return identity_ == window; }

 private:
  std::weak_ptr<UIWindow> window_;
  const UIWindow* identity_ = nullptr;  // only compared: the window may be gone
};

// One for the process, destroyed with the application. Main thread.
class RQAlertViewWindowsObserver : public QObject {
  Q_OBJECT

 public:
  static RQAlertViewWindowsObserver* sharedInstance();

  // Registers for the visibility of windows; further calls do nothing.
  void startObserving();

  // From the lowest to the topmost; may hold entries whose window is gone.
  const std::vector<RQAlertViewWindowContainer>& windowsArray() const { return windowsArray_; }
  // Drops the entries whose window is gone, then returns the topmost window, or null.
  std::shared_ptr<UIWindow> lastWindow();
  bool isWindowsArrayContains(const UIWindow* window) const;

 private:
  using QObject::QObject;

  void windowVisibleChanged(const NSNotification& notification);
  void push(UIWindow* window);
  void restoreAfter(UIWindow* window);

  std::vector<RQAlertViewWindowContainer> windowsArray_;
  bool observing_ = false;
  bool covering_ = false;  // a newer window is hiding the one below
};
