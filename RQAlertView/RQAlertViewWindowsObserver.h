// The stack of dialog windows: a newer one covers the one below it, which comes back when the newer one goes.
#pragma once

#include "RQAlertView/RQAlertViewWindowContainer.h"

#include <memory>
#include <vector>

#include <QObject>

struct NSNotification;

// One for the process, destroyed with the application. Main thread.
class RQAlertViewWindowsObserver : public QObject {
  Q_OBJECT

 public:
  static RQAlertViewWindowsObserver* sharedInstance();

  // Registers for the visibility of windows; once is enough, more does no harm.
  void startObserving();

  // From the lowest to the topmost; may hold entries whose window is gone.
  const std::vector<RQAlertViewWindowContainer>& windowsArray() const { return windowsArray_; }
  // Drops the entries whose window is gone, then answers the topmost window, or null.
  std::shared_ptr<UIWindow> lastWindow();
  bool isWindowsArrayContains(const UIWindow* window) const;

 private:
  using QObject::QObject;

  void windowVisibleChanged(const NSNotification& notification);
  void push(UIWindow* window);
  void restoreAfter(UIWindow* window);

  std::vector<RQAlertViewWindowContainer> windowsArray_;
  bool observing_ = false;
  bool covering_ = false;  // a window is being hidden by a newer one
};
