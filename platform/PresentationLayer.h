// One layer of a window: holds one controller's view and moves it in and out.
#pragma once

#include <functional>

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
