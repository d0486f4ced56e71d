// The application object: the event loop and its boundary, the key window, opening URLs.
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include <QApplication>
#include <QPointer>
#include <QUrl>
#include <QVariantMap>

class UIApplication;

// Called on the main thread.
class UIApplicationDelegate {
 public:
  virtual ~UIApplicationDelegate() = default;

  // Make the first window here. The application ends at once if this returns false.
  virtual bool applicationDidFinishLaunchingWithOptions(UIApplication& /*application*/,
                                                        const QVariantMap& /*options*/) {
    return true;
  }
};

class QKeyEvent;
class UIViewController;
class UIWindow;

// One for a process. An exception that any event handler lets out is written to the system log, and the
// application goes on. Main thread.
class UIApplication : public QApplication {
  Q_OBJECT

 public:
  // Sets the style and the dark palette, so that the application looks the same on every desktop.
  UIApplication(int& argc, char** argv);
  // Waits for the jobs of the global queues.
  ~UIApplication() override;

  static UIApplication* sharedApplication();

  bool notify(QObject* receiver, QEvent* event) override;

  // Hands `url` to the opener and reports its result to `completionHandler`, from the event loop. There are
  // no options yet.
  void openURL(const QUrl& url, const QVariantMap& options = {},
               std::function<void(bool)> completionHandler = {});
  // The opener returns whether it took the URL. Without one every URL is logged and refused.
  void setURLOpener(std::function<bool(const QUrl&)> opener) { opener_ = std::move(opener); }

  UIApplicationDelegate* delegate() const { return delegate_.get(); }
  void setDelegate(std::unique_ptr<UIApplicationDelegate> delegate) { delegate_ = std::move(delegate); }

  // The window that takes input, or null.
  UIWindow* keyWindow() const;
  // The application's own window, below the dialogs: the lowest of the normal level that is shown, else
  // the lowest of that level; null where there is none.
  UIWindow* appWindow() const;
  // Makes the topmost visible window key, in place of the one that is.
  void passKeyOn();

 private:
  friend class UIWindow;

  void setKeyWindow(UIWindow* window);
  // `window` is being destroyed and already off the screen.
  void forgetWindow(const UIWindow* window);
  // Whether the key is held down since another dialog or screen was on top. Such repeats are dropped.
  bool isHeldOver(const QKeyEvent& press);

  std::unique_ptr<UIApplicationDelegate> delegate_;
  std::function<bool(const QUrl&)> opener_;
  QPointer<UIWindow> keyWindow_;
  // The last key that was pressed, and the controller on top at that time.
  int pressedKey_ = 0;
  std::weak_ptr<UIViewController> pressedIn_;
};

// Makes the application and its delegate, shows the screen and runs the event loop. Returns the exit status.
int UIApplicationMain(int argc, char** argv,
                      const std::function<std::unique_ptr<UIApplicationDelegate>()>& delegate);

// Whether a widget with the focus shows a ring: after Tab or a shortcut, until a mouse or finger is pressed.
bool showsFocus(const QWidget& control);

// Turns the rings on or off for the window that `widget` is in.
void showFocusRings(const QWidget& widget, bool shown);
