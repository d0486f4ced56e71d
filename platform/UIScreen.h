// The screen: the one top-level window, which contains the application's windows one above the other; the
// kind of device that it stands for; and whether anything on it moves.
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

  // Shows the window in front of those of other programs, if the desktop allows it. `activationToken` is its
  // leave to do so under Wayland, or empty.
  void comeForward(const QByteArray& activationToken);

  // From the lowest to the topmost: by level, then by the order in which they came to the front. Hidden ones
  // are included.
  const std::vector<UIWindow*>& windows() const { return windows_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;
  // Closes unless the top controller of one of the windows vetoes it.
  void closeEvent(QCloseEvent* event) override;

 private:
  friend class UIApplication;
  friend class UIWindow;

  UIScreen();
  static void destroyMainScreen();
  void add(UIWindow* window);
  void remove(UIWindow* window) { std::erase(windows_, window); }
  void bringToFront(UIWindow* window);

  std::vector<UIWindow*> windows_;
};

// Tells assistive technology that another layer of the screen, or of a window, is on top.
void reportTopLayer(QWidget& layered);

enum class UIUserInterfaceIdiom { Phone = 0, Pad = 1 };

class UIDevice {
 public:
  static UIDevice& currentDevice();

  // A pad if the screen's shorter side is as long as the smallest pad's, else a phone. Follows the screen as
  // it is resized.
  UIUserInterfaceIdiom userInterfaceIdiom() const;

  double systemVersion() const { return systemVersion_; }
  void setSystemVersion(double version) { systemVersion_ = version; }

 private:
  UIDevice() = default;

  double systemVersion_ = 14.0;
};

// True until switched off, unless the desktop asks for reduced motion. With motion off everything that would
// be animated takes its final state at once, with the same reports in the same order. Main thread.
bool motionEnabled();
void setMotionEnabled(bool enabled);
