// The screen: the one top-level window, in which the application's windows lie one above the other.
#pragma once

#include <vector>

#include <QWidget>

class UIWindow;

// Made at first use and destroyed with the application. Main thread.
class UIScreen : public QWidget {
  Q_OBJECT

 public:
  static UIScreen* mainScreen();
  ~UIScreen() override;

  // Logical pixels, the corner at (0, 0).
  QRect bounds() const { return rect(); }

  // From the lowest to the topmost: by level, then by the order in which they came to the front. Hidden ones
  // are included.
  const std::vector<UIWindow*>& windows() const { return windows_; }

 signals:
  void boundsChanged(const QRect& bounds);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  // Closes unless the controller on top of one of the windows has something against it.
  void closeEvent(QCloseEvent* event) override;

 private:
  friend class UIApplication;
  friend class UIWindow;

  UIScreen();
  static void destroyMainScreen();
  void add(UIWindow* window);
  void remove(UIWindow* window);
  void bringToFront(UIWindow* window);

  std::vector<UIWindow*> windows_;
};
