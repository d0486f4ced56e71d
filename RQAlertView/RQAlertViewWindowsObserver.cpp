#include "RQAlertView/RQAlertViewWindowsObserver.h"

#include "platform/EventLoop.h"
#include "platform/NSNotificationCenter.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"

#include <algorithm>
#include <cstring>

#include <QCoreApplication>
#include <QPointer>

RQAlertViewWindowsObserver* RQAlertViewWindowsObserver::sharedInstance() {
  static QPointer<RQAlertViewWindowsObserver> observer;
  if (!observer) observer = new RQAlertViewWindowsObserver(QCoreApplication::instance());
  return observer;
}

void RQAlertViewWindowsObserver::startObserving() {
  if (observing_) return;
  observing_ = true;
  for (const QString& name : {UIWindowDidBecomeVisibleNotification, UIWindowDidBecomeHiddenNotification}) {
    NSNotificationCenter::defaultCenter().addObserver(
        this, name, nullptr,
        [this](const NSNotification& notification) { windowVisibleChanged(notification); });
  }
}

std::shared_ptr<UIWindow> RQAlertViewWindowsObserver::lastWindow() {
  std::erase_if(windowsArray_,
                [](const RQAlertViewWindowContainer& container) { return !container.window(); });
  return windowsArray_.empty() ? nullptr : windowsArray_.back().window();
}

bool RQAlertViewWindowsObserver::isWindowsArrayContains(const UIWindow* window) const {
  return std::any_of(windowsArray_.begin(), windowsArray_.end(),
                     [window](const auto& container) { return container.window().get() == window; });
}

void RQAlertViewWindowsObserver::windowVisibleChanged(const NSNotification& notification) {
  auto* window = qobject_cast<UIWindow*>(notification.object);
  if (!window || !std::strstr(window->metaObject()->className(), "Alert")) return;
  if (notification.name == UIWindowDidBecomeVisibleNotification) {
    push(window);
  } else if (!windowsArray_.empty() && windowsArray_.back().holds(window)) {
    restoreAfter(window);
  }
}

void RQAlertViewWindowsObserver::push(UIWindow* window) {
  if (isWindowsArrayContains(window)) return;
  if (const std::shared_ptr<UIWindow> covered = lastWindow()) {
    covering_ = true;
    covered->setHidden(true);
    covering_ = false;
    window->setPassesKeyOn(false);
  }
  windowsArray_.push_back(RQAlertViewWindowContainer::containerWithWindow(window->shared_from_this()));
}

void RQAlertViewWindowsObserver::restoreAfter(UIWindow* window) {
  const std::weak_ptr<UIWindow> hidden = window->weak_from_this();
  // Nothing is painted before the dialog below is back: for a moment the screen would show without any.
  const bool uncovers = !covering_ && std::any_of(windowsArray_.begin(), windowsArray_.end(),
                                                  [window](const RQAlertViewWindowContainer& container) {
                                                    return container.window() && !container.holds(window);
                                                  });
  if (uncovers) UIScreen::mainScreen()->setUpdatesEnabled(false);
  dispatch_after(0, dispatch_get_main_queue(), [hidden] {
    UIScreen::mainScreen()->setUpdatesEnabled(true);
    // A window that is only hidden keeps its place.
    const std::shared_ptr<UIWindow> last = hidden.expired() ? sharedInstance()->lastWindow() : nullptr;
    if (last) {
      last->makeKeyAndVisible();
    } else if (UIApplication& application = *UIApplication::sharedApplication(); !application.keyWindow()) {
      // The covered window has gone meanwhile.
      application.passKeyOn();
    }
  });
}
