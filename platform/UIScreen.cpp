#include "platform/UIScreen.h"

#include "core/LauncherContract.h"
#include "platform/ApplicationStyle.h"
#include "platform/EventLoop.h"
#include "platform/UIApplication.h"
#include "platform/UIViewController.h"
#include "platform/UIWindow.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <xcb/xcb.h>

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

// --- What X11's window manager learns beside what Qt tells it

template <typename Reply>
using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

xcb_connection_t* x11Display() {
  const auto* const x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 ? x11->connection() : nullptr;
}

xcb_atom_t atomOf(xcb_connection_t* display, std::string_view name) {
  const auto asked = xcb_intern_atom(display, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const Answer<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(display, asked, nullptr), std::free);
  return atom ? atom->atom : xcb_atom_t{XCB_ATOM_NONE};
}

// Shows the window in front, and its desktop. A window manager need not follow an application's own wish, and
// does not where the window is on another desktop or the user was last elsewhere, but follows a panel's.
void activateAsPanel(WId window) {
  xcb_connection_t* const display = x11Display();
  if (!display) return;
  const auto own = static_cast<xcb_window_t>(window);
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(display)).data->root;
  const auto ask = [display, root](xcb_window_t about, std::string_view wish, std::uint32_t value) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = about;
    message.type = atomOf(display, wish);
    message.data.data32[0] = value;
    xcb_send_event(display, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
  };
  constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;
  constexpr std::uint32_t fromPanel = 2;
  const auto asked =
      xcb_get_property(display, 0, own, atomOf(display, "_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, 0, 1);
  const Answer<xcb_get_property_reply_t> place(xcb_get_property_reply(display, asked, nullptr), std::free);
  if (place && xcb_get_property_value_length(place.get()) == sizeof(std::uint32_t)) {
    const auto desktop = *static_cast<const std::uint32_t*>(xcb_get_property_value(place.get()));
    if (desktop != everyDesktop) ask(root, "_NET_CURRENT_DESKTOP", desktop);
  }
  ask(own, "_NET_ACTIVE_WINDOW", fromPanel);
  xcb_flush(display);
}

// The names of the host and the process in the device mean nothing outside, but are shown in titles, and
// would be killed by. Before the window is shown.
void forgetHostOf(WId window) {
  xcb_connection_t* const display = x11Display();
  if (!display) return;
  for (const char* const property : {"WM_CLIENT_MACHINE", "_NET_WM_PID"})
    xcb_delete_property(display, static_cast<xcb_window_t>(window), atomOf(display, property));
}

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

void UIScreen::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
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
