#include "platform/UIApplication.h"

#include "core/Process.h"
#include "platform/ApplicationStyle.h"
#include "platform/EventLoop.h"
#include "platform/UIKeyboard.h"
#include "platform/UIScreen.h"
#include "platform/UIWindow.h"

#include <QAbstractScrollArea>
#include <QPalette>
#include <QPixmapCache>
#include <QThreadPool>

namespace {

constexpr int pictureCacheKilobytes = 2048;

// Painting hands work to this pool and waits for it, for ever if no thread can be started. So one thread is
// started at once, takes all of the work and never ends.
void startPaintingThread() {
  QThreadPool& threads = *QThreadPool::globalInstance();
  threads.setMaxThreadCount(1);
  threads.setExpiryTimeout(-1);
  threads.start([] {});
}

QPalette darkPalette() {
  QPalette palette(grey(53), grey(40));
  palette.setColor(QPalette::PlaceholderText, grey(165));
  palette.setColor(QPalette::Base, palette.color(QPalette::Button));
  palette.setColor(QPalette::ToolTipBase, grey(69));
  palette.setColor(QPalette::ToolTipText, grey(240));
  // Dark enough for white text on it, light enough to stand out from the window.
  palette.setColor(QPalette::Highlight, QColor(0, 110, 230));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, QColor(10, 132, 255));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(role, grey(240));
    palette.setColor(QPalette::Disabled, role, grey(118));
  }
  return palette;
}

}  // namespace

UIApplication::UIApplication(int& argc, char** argv) : QApplication(argc, argv) {
  setStyle(new ApplicationStyle);
  setPalette(darkPalette());
  // The style caches a picture of each control for each palette, and each dialog has palettes of its own.
  QPixmapCache::setCacheLimit(pictureCacheKilobytes);
  startPaintingThread();
  new UIKeyboard(this);
}

UIApplication::~UIApplication() {
  dispatch_wait_for_global_queues();
  // Windows ask the application for the key window as they go, so they go while it is still whole.
  delegate_.reset();
  UIScreen::destroyMainScreen();
  // Drops the jobs of the main queue while their objects can still be destroyed in order, and destroys what
  // waits for an event loop that will not run again.
  QCoreApplication::removePostedEvents(this, QEvent::MetaCall);
  drainAutoreleasePool();
  sendPostedEvents(nullptr, QEvent::DeferredDelete);
  drainAutoreleasePool();
}

UIApplication* UIApplication::sharedApplication() {
  return qobject_cast<UIApplication*>(QCoreApplication::instance());
}

bool UIApplication::notify(QObject* receiver, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress && receiver->isWindowType() && focusWidget())
    showFocusRings(*focusWidget(), false);
  if (event->type() == QEvent::KeyRelease) noteKeyRelease(*static_cast<QKeyEvent*>(event));
  if (event->type() == QEvent::KeyPress && isHeldOver(*static_cast<QKeyEvent*>(event))) return true;
  try {
    return QApplication::notify(receiver, event);
  } catch (...) {
    logCurrentException("an event handler");
    return false;
  }
}

bool UIApplication::isHeldOver(const QKeyEvent& press) {
  const auto top = keyWindow_ ? keyWindow_->topViewController() : nullptr;
  if (isRepeated(press)) return press.key() == pressedKey_ && top != pressedIn_.lock();
  pressedKey_ = press.key();
  pressedIn_ = top;
  return false;
}

void UIApplication::openURL(const QUrl& url, const QVariantMap& /*options*/,
                            std::function<void(bool)> completionHandler) {
  bool opened = false;
  if (opener_) {
    atEventBoundary([&] { opened = opener_(url); })();
  } else {
    NSLog("No opener for " + url.toString(QUrl::FullyEncoded).toStdString());
  }
  if (!completionHandler) return;
  dispatch_async(dispatch_get_main_queue(),
                 [opened, completionHandler = std::move(completionHandler)] { completionHandler(opened); });
}

UIWindow* UIApplication::keyWindow() const {
  return keyWindow_;
}

UIWindow* UIApplication::appWindow() const {
  UIWindow* hidden = nullptr;
  for (UIWindow* window : UIScreen::mainScreen()->windows()) {
    if (window->windowLevel() != UIWindowLevelNormal) continue;
    if (!window->isHidden()) return window;
    if (!hidden) hidden = window;
  }
  return hidden;
}

void UIApplication::setKeyWindow(UIWindow* window) {
  const QPointer<UIWindow> before = keyWindow_;
  if (before == window) {
    if (window) window->restoreFocus();
    return;
  }
  if (before) before->rememberFocus();
  keyWindow_ = window;
  reportTopLayer(*UIScreen::mainScreen());
  if (!window) {
    // A hidden window takes no keys.
    QWidget* const focused = before ? before->window()->focusWidget() : nullptr;
    if (focused) focused->clearFocus();
    return;
  }
  // The new one takes the focus before the others are disabled.
  window->becomeKey();
  for (UIWindow* each : UIScreen::mainScreen()->windows()) {
    if (each != keyWindow_) setTakesInput(*each, false);
  }
}

void UIApplication::forgetWindow(const UIWindow* window) {
  if (keyWindow_ != window) return;
  keyWindow_ = nullptr;
  passKeyOn();
}

void UIApplication::passKeyOn() {
  UIWindow* next = nullptr;
  for (UIWindow* window : UIScreen::mainScreen()->windows()) {
    if (!window->isHidden()) next = window;
  }
  setKeyWindow(next);
}

int UIApplicationMain(int argc, char** argv,
                      const std::function<std::unique_ptr<UIApplicationDelegate>()>& delegate) {
  UIApplication application(argc, argv);
  application.setDelegate(delegate());
  bool launched = true;
  atEventBoundary([&] {
    if (application.delegate()) {
      launched = application.delegate()->applicationDidFinishLaunchingWithOptions(application, {});
    }
  })();
  if (!launched) return 1;
  UIScreen::mainScreen()->show();
  return UIApplication::exec();
}

bool showsFocus(const QWidget& control) {
  return control.hasFocus() && control.window()->testAttribute(Qt::WA_KeyboardFocusChange);
}

void showFocusRings(const QWidget& widget, bool shown) {
  widget.window()->setAttribute(Qt::WA_KeyboardFocusChange, shown);
  QWidget* const focused = QApplication::focusWidget();
  if (focused == nullptr) return;
  focused->update();
  if (auto* const area = qobject_cast<QAbstractScrollArea*>(focused)) area->viewport()->update();
}
