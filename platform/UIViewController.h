// A screen of the application: makes one view, hears when it comes and goes, and presents other screens.
#pragma once

#include <functional>
#include <memory>

#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>

// Always fills its parent, so that nothing below can be reached past it. The view in it fills it too, moved
// down by a fraction of its height.
class PresentationLayer : public QWidget {
  Q_OBJECT

 public:
  PresentationLayer(QWidget* parent, QWidget* view);

  QWidget* view() const { return view_; }

  // Moves the view from one fraction of the height to another, 0 being in place and 1 just below the edge.
  // `finished` is called exactly once: at the end, at once where nothing moves, or by finish(); never when
  // the layer is destroyed first.
  void slide(double from, double to, bool animated, std::function<void()> finished);
  // Ends a running slide at its final place. Does nothing otherwise.
  void finish();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void place(double fraction);

  QPointer<QWidget> view_;
  double fraction_ = 0;
  QVariantAnimation animation_;
  std::function<void()> finished_;
};

class UIWindow;

enum class UIStatusBarStyle { Default = 0, LightContent = 1 };
enum class UIStatusBarAnimation { None = 0, Fade = 1, Slide = 2 };
// A set of orientations, one bit each.
enum class UIInterfaceOrientationMask : unsigned {
  Portrait = 1U << 1,
  PortraitUpsideDown = 1U << 2,
  LandscapeRight = 1U << 3,
  LandscapeLeft = 1U << 4,
  AllButUpsideDown = Portrait | LandscapeLeft | LandscapeRight,
  All = AllButUpsideDown | PortraitUpsideDown
};

// Make controllers with std::make_shared. A window keeps its root controller, a controller the one that it
// presents; the last reference may be dropped from within an event of the controller's own view when it goes
// through dismissViewControllerAnimated(). Main thread.
class UIViewController : public QObject, public std::enable_shared_from_this<UIViewController> {
  Q_OBJECT

 public:
  ~UIViewController() override;

  // Made at first use: loadView(), then viewDidLoad(). Owned by the controller.
  QWidget* view();
  bool isViewLoaded() const { return !view_.isNull(); }
  // The window that shows the view, or null.
  UIWindow* window() const;

  // Shows `controller` over this one's view, sliding up when `animated` and motion is on. The covered view
  // takes no input from now on, is hidden once it is covered, and keeps its focus for later. Logged and
  // ignored: null, a controller that is already presented, presenting twice, and presenting from a view that
  // is in no window. `completion` is called when the presented view is in place; it is called early when the
  // controller is dismissed while it still moves.
  void presentViewController(std::shared_ptr<UIViewController> controller, bool animated,
                             std::function<void()> completion = {});
  // Takes away what this controller presents, and all that is presented from there; a controller that
  // presents nothing is itself taken away by its presenter. What slides away takes no input, and what it
  // covered takes input again once it is gone. Otherwise nothing happens and `completion` is not
  // called.
  void dismissViewControllerAnimated(bool animated, std::function<void()> completion = {});

  std::shared_ptr<UIViewController> presentedViewController() const { return presented_; }

  virtual bool shouldAutorotate() const { return true; }
  virtual UIInterfaceOrientationMask supportedInterfaceOrientations() const {
    return UIInterfaceOrientationMask::AllButUpsideDown;
  }
  virtual UIStatusBarStyle preferredStatusBarStyle() const { return UIStatusBarStyle::Default; }
  virtual bool prefersStatusBarHidden() const { return false; }
  virtual UIStatusBarAnimation preferredStatusBarUpdateAnimation() const {
    return UIStatusBarAnimation::Fade;
  }

  // Esc was pressed while this controller was on top and nothing in its view took the key.
  virtual void cancelOperation() {}
  // The user wants the screen to be closed, and with it the application, while this controller is on top in
  // its window. False leaves it open.
  virtual bool screenShouldClose() { return true; }

 protected:
  // Makes the view and hands it to setView(). The view has no parent yet.
  virtual void loadView() { setView(new QWidget); }
  void setView(QWidget* view) { view_ = view; }
  // An override calls the base's first.
  virtual void viewDidLoad() {}
  // The view is about to be taken away, or covered by that of a controller that is presented.
  virtual void viewWillDisappear(bool /*animated*/) {}

 private:
  friend class UIWindow;

  void dismissPresented(bool animated, std::function<void()> completion);
  void presentedWentAway(const std::function<void()>& completion);

  QPointer<QWidget> view_;
  // While this controller is shown: the layer of its view.
  QPointer<PresentationLayer> layer_;
  QPointer<QWidget> focusBelow_;
  std::shared_ptr<UIViewController> presented_;
  std::weak_ptr<UIViewController> presenting_;
};
