#include "platform/UIScreen.h"

#include "core/LauncherContract.h"
#include "platform/ApplicationStyle.h"
#include "platform/EventLoop.h"
#include "platform/UIApplication.h"
#include "platform/UIViewController.h"
#include "platform/UIWindow.h"
#include "platform/WindowManager.h"

#include <algorithm>
#include <memory>
#include <optional>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCloseEvent>
#include <QPointer>
#include <QResizeEvent>

namespace {

// Logical pixels: a common phone's screen to start with, the smallest one as the limit.
constexpr QSize firstSize{390, 844};
constexpr QSize smallestSize{320, 480};
constexpr int shortestPadSide = 744;
// Seconds, by which the first screen has been painted.
constexpr double fontDelay = 0.3;

// Lists only the layer on top: the key window of the screen, the view that a window presented last. What they
// cover is no longer used, though some of it is in sight and hidden lists would say that their items are.
class AccessibleLayers : public QAccessibleWidget {
 public:
  using QAccessibleWidget::QAccessibleWidget;

  int childCount() const override { return top() ? 1 : 0; }
  QAccessibleInterface* child(int index) const override {
    return index == 0 && top() ? QAccessible::queryAccessibleInterface(top()) : nullptr;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    return child && child->object() == top() ? 0 : -1;
  }

 private:
  QWidget* top() const {
    if (const auto* const window = qobject_cast<UIWindow*>(widget())) {
      const std::shared_ptr<UIViewController> controller = window->topViewController();
      return controller && controller->isViewLoaded() ? controller->view()->parentWidget() : nullptr;
    }
    return UIApplication::sharedApplication()->keyWindow();
  }
};

// To a screen reader a plain widget is only a filler; it follows windows.
QAccessibleInterface* makeInterface(const QString& className, QObject* object) {
  const bool isScreen = className == QLatin1String("UIScreen");
  if (!isScreen && className != QLatin1String("UIWindow")) return nullptr;
  return new AccessibleLayers(static_cast<QWidget*>(object),
                              isScreen ? QAccessible::Window : QAccessible::Client);
}

QPointer<UIScreen> theScreen;

std::optional<bool> chosenMotion;

}  // namespace

UIScreen* UIScreen::mainScreen() {
  if (!theScreen) {
    QAccessible::installFactory(makeInterface);
    theScreen = new UIScreen;
  }
  return theScreen;
}

void UIScreen::destroyMainScreen() {
  delete theScreen.data();
}

UIScreen::UIScreen() {
  setObjectName(QStringLiteral("Screen"));
  setWindowTitle(QStringLiteral("Tweakbench"));
  setMinimumSize(smallestSize);
  resize(firstSize);
  forgetHostOf(winId());
  dispatch_after(fontDelay, dispatch_get_main_queue(), loadFonts);
}

UIScreen::~UIScreen() {
  // The windows look for their screen as they go, so they go first.
  while (!windows_.empty()) delete windows_.back();
}

void UIScreen::comeForward(const QByteArray& activationToken) {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  raise();
  constexpr const char* variable = "XDG_ACTIVATION_TOKEN";
  if (!activationToken.isEmpty()) qputenv(variable, activationToken);
  activateWindow();
  activateAsPanel(winId());
  // It holds once, and is not for commands.
  qunsetenv(variable);
}

void UIScreen::resizeEvent(QResizeEvent*) {
  for (UIWindow* window : windows_) window->setGeometry(rect());
}

void UIScreen::closeEvent(QCloseEvent* event) {
  for (const UIWindow* window : windows_) {
    const std::shared_ptr<UIViewController> top = window->topViewController();
    if (!top || top->screenShouldClose()) continue;
    event->ignore();
    return;
  }
  QWidget::closeEvent(event);
}

void UIScreen::add(UIWindow* window) {
  windows_.push_back(window);
  window->setGeometry(rect());
  bringToFront(window);
}

void UIScreen::bringToFront(UIWindow* window) {
  std::erase(windows_, window);
  const auto place = std::find_if(windows_.begin(), windows_.end(), [window](const UIWindow* other) {
    return other->windowLevel() > window->windowLevel();
  });
  windows_.insert(place, window);
  for (UIWindow* each : windows_) each->raise();
}

void reportTopLayer(QWidget& layered) {
  QAccessibleInterface* const interface =
      QAccessible::isActive() ? QAccessible::queryAccessibleInterface(&layered) : nullptr;
  QAccessibleInterface* const top = interface ? interface->child(0) : nullptr;
  if (!top) return;
  // Not as a new order of children, which the library sends in a form that nobody reads.
  QAccessibleEvent added(top->object(), QAccessible::ObjectCreated);
  QAccessible::updateAccessibility(&added);
}

UIDevice& UIDevice::currentDevice() {
  static UIDevice device;
  return device;
}

UIUserInterfaceIdiom UIDevice::userInterfaceIdiom() const {
  const QSize size = UIScreen::mainScreen()->size();
  return std::min(size.width(), size.height()) >= shortestPadSide ? UIUserInterfaceIdiom::Pad
                                                                  : UIUserInterfaceIdiom::Phone;
}

bool motionEnabled() {
  // The device cannot see the desktop's settings; the launcher has looked.
  return chosenMotion.value_or(!qEnvironmentVariableIsSet(reducedMotionVariable));
}

void setMotionEnabled(bool enabled) {
  chosenMotion = enabled;
}
