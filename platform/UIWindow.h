// A window of the application: a layer that always fills the screen and shows a view controller's view.
#pragma once

#include <memory>
#include <utility>

#include <QPointer>
#include <QWidget>

class PresentationLayer;
class UIViewController;

// Posted with the window as object, no userInfo.
inline const QString UIWindowDidBecomeVisibleNotification =
    QStringLiteral("UIWindowDidBecomeVisibleNotification");
inline const QString UIWindowDidBecomeHiddenNotification =
    QStringLiteral("UIWindowDidBecomeHiddenNotification");
inline const QString UIWindowDidBecomeKeyNotification = QStringLiteral("UIWindowDidBecomeKeyNotification");

inline constexpr double UIWindowLevelNormal = 0;
inline constexpr double UIWindowLevelStatusBar = 1000;
inline constexpr double UIWindowLevelAlert = 2000;

// Hidden when made. Only the key window takes input: while another window is key, this one is disabled for
// the pointer, the focus, shortcuts and assistive technology, and has its focus back when it becomes key
// again. Tab goes round inside the window. Main thread.
//
// Make windows with makeUIWindow(); the reference is the owner.
class UIWindow : public QWidget, public std::enable_shared_from_this<UIWindow> {
  Q_OBJECT

 public:
  explicit UIWindow(double windowLevel = UIWindowLevelNormal);
  ~UIWindow() override;

  // The window keeps the controller; its view fills the window. Null takes the present one away.
  void setRootViewController(std::shared_ptr<UIViewController> controller);
  const std::shared_ptr<UIViewController>& rootViewController() const { return rootViewController_; }
  // The controller whose view is on top: the last one presented from the root controller, or null.
  std::shared_ptr<UIViewController> topViewController() const;

  // Brings the window to the front of its level, shows it and makes it the one that takes input.
  void makeKeyAndVisible();
  bool isKeyWindow() const;
  // Showing and hiding a window (setHidden, setVisible, show, hide) posts the notifications above. When the
  // key window is hidden, the topmost one that is still visible becomes key, unless setPassesKeyOn() says
  // otherwise.
  void setVisible(bool visible) override;

  // False if a window that is hidden now is to come back in this one's place: when this one is hidden as the
  // key window, nothing takes input until the other one is made key.
  void setPassesKeyOn(bool passes) { passesKeyOn_ = passes; }

  double windowLevel() const { return windowLevel_; }
  // Moves the window to the front of its new level; does nothing where that is the level it has.
  void setWindowLevel(double level);

  // Ends typing: what an input method holds is entered, and no field of the window has the focus any more.
  void endEditing();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  friend class UIApplication;
  friend class UIViewController;

  void becomeKey();
  void rememberFocus();
  void restoreFocus();

  double windowLevel_;
  bool passesKeyOn_ = true;
  std::shared_ptr<UIViewController> rootViewController_;
  QPointer<PresentationLayer> rootLayer_;
  QPointer<QWidget> lastFocus_;
};

template <typename Window = UIWindow, typename... Arguments>
[[nodiscard]] std::shared_ptr<Window> makeUIWindow(Arguments&&... arguments) {
  auto* window = new Window(std::forward<Arguments>(arguments)...);
  // The guard is for a screen that goes first and destroys its windows, which are then only QObjects.
  return std::shared_ptr<Window>(window, [guard = QPointer<QObject>(window)](UIWindow*) {
    auto* const retired = qobject_cast<UIWindow*>(guard.data());
    if (!retired) return;
    // The last reference may go from within one of its own events.
    retired->setVisible(false);
    retired->deleteLater();
  });
}

// Without input `widget` and all in it take neither keys, shortcuts nor clicks, but look the same. Move the
// focus elsewhere first. Main thread.
void setTakesInput(QWidget& widget, bool takesInput);
