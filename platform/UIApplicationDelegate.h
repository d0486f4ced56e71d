// What an application is told about its own life.
#pragma once

#include <QVariantMap>

class UIApplication;

// Called on the main thread.
class UIApplicationDelegate {
 public:
  virtual ~UIApplicationDelegate() = default;

  // The place to make the first window. The application ends at once when false is answered.
  virtual bool applicationDidFinishLaunchingWithOptions(UIApplication& /*application*/,
                                                        const QVariantMap& /*options*/) {
    return true;
  }
  virtual void applicationWillResignActive(UIApplication& /*application*/) {}
  virtual void applicationDidEnterBackground(UIApplication& /*application*/) {}
  virtual void applicationWillEnterForeground(UIApplication& /*application*/) {}
  virtual void applicationDidBecomeActive(UIApplication& /*application*/) {}
  // The last call before the application ends.
  virtual void applicationWillTerminate(UIApplication& /*application*/) {}
};
