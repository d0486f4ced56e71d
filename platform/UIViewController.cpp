#include "platform/UIViewController.h"

#include "core/Process.h"
#include "platform/EventLoop.h"
#include "platform/UIScreen.h"
#include "platform/UIWindow.h"

#include <utility>

#include <QResizeEvent>

namespace {

constexpr int slideMilliseconds = 350;

}  // namespace

PresentationLayer::PresentationLayer(QWidget* parent, QWidget* view) : QWidget(parent), view_(view) {
  setGeometry(parent->rect());
  view->setParent(this);
  place(0);
  view->show();
  animation_.setDuration(slideMilliseconds);
  animation_.setEasingCurve(QEasingCurve::OutCubic);
  connect(&animation_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { place(value.toDouble()); });
  connect(&animation_, &QVariantAnimation::finished, this, atEventBoundary([this] { finish(); }));
}

void PresentationLayer::slide(double from, double to, bool animated, std::function<void()> finished) {
  finish();
  finished_ = std::move(finished);
  animation_.setStartValue(from);
  animation_.setEndValue(to);
  if (animated && motionEnabled() && isVisible()) {
    place(from);
    animation_.start();
  } else {
    finish();
  }
}

void PresentationLayer::finish() {
  if (!finished_) return;
  // The end value first: what is called may slide the layer anew or drop it.
  const std::function<void()> finished = std::exchange(finished_, nullptr);
  animation_.stop();
  place(animation_.endValue().toDouble());
  finished();
}

void PresentationLayer::resizeEvent(QResizeEvent*) {
  place(fraction_);
}

void PresentationLayer::place(double fraction) {
  fraction_ = fraction;
  if (view_) view_->setGeometry(rect().translated(0, qRound(fraction * height())));
}

UIViewController::~UIViewController() {
  // The view may be in the middle of one of its own events.
  if (view_) {
    view_->hide();
    view_->setParent(nullptr);
    view_->deleteLater();
  }
  if (presented_ && presented_->layer_) presented_->layer_->deleteLater();
}

QWidget* UIViewController::view() {
  if (!view_) {
    loadView();
    if (!view_) setView(new QWidget);
    viewDidLoad();
  }
  return view_;
}

UIWindow* UIViewController::window() const {
  for (QWidget* widget = view_; widget; widget = widget->parentWidget()) {
    if (auto* window = qobject_cast<UIWindow*>(widget)) return window;
  }
  return nullptr;
}

void UIViewController::presentViewController(std::shared_ptr<UIViewController> controller, bool animated,
                                             std::function<void()> completion) {
  // A dismissal that is still moving makes room first.
  if (presented_ && presented_->layer_) presented_->layer_->finish();
  UIWindow* const window = this->window();
  if (!controller || controller.get() == this || presented_ || controller->window() || !window) {
    NSLog("A view controller was not presented: it is missing, already shown, or there is no room for it.");
    return;
  }
  presented_ = std::move(controller);
  UIViewController& shown = *presented_;
  shown.presenting_ = weak_from_this();

  QWidget* focused = window->window()->focusWidget();
  focusBelow_ = focused && view_->isAncestorOf(focused) ? focused : nullptr;
  shown.layer_ = new PresentationLayer(window, shown.view());
  viewWillDisappear(animated);
  shown.layer_->show();
  reportTopLayer(*window);
  shown.view()->setFocus(Qt::OtherFocusReason);
  // Its keys are not for a screen that is on its way out of sight.
  if (layer_) setTakesInput(*layer_, false);
  shown.layer_->slide(1, 0, animated, [weak = weak_from_this(), completion = std::move(completion)] {
    const std::shared_ptr<UIViewController> self = weak.lock();
    if (!self || !self->presented_) return;
    // Covered: out of reach of the focus and of assistive technology too.
    if (self->layer_) self->layer_->hide();
    call(completion);
  });
}

void UIViewController::dismissViewControllerAnimated(bool animated, std::function<void()> completion) {
  if (presented_) {
    dismissPresented(animated, std::move(completion));
  } else if (const std::shared_ptr<UIViewController> presenter = presenting_.lock()) {
    presenter->dismissPresented(animated, std::move(completion));
  }
}

void UIViewController::dismissPresented(bool animated, std::function<void()> completion) {
  if (presented_->layer_) presented_->layer_->finish();
  // What was moving may have been a dismissal.
  if (!presented_) {
    call(completion);
    return;
  }
  const std::shared_ptr<UIViewController> leaving = presented_;
  if (leaving->presented_) leaving->dismissPresented(false, {});
  if (layer_) layer_->show();
  leaving->viewWillDisappear(animated);
  auto ended = [weak = weak_from_this(), completion = std::move(completion)] {
    if (const std::shared_ptr<UIViewController> self = weak.lock()) self->presentedWentAway(completion);
  };
  if (leaving->layer_) {
    // Neither this screen nor that one takes keys until the change is over.
    if (UIWindow* const window = this->window()) window->setFocus(Qt::OtherFocusReason);
    setTakesInput(*leaving->layer_, false);
    leaving->layer_->slide(0, 1, animated, std::move(ended));
  } else {
    ended();
  }
}

void UIViewController::presentedWentAway(const std::function<void()>& completion) {
  const std::shared_ptr<UIViewController> left = std::exchange(presented_, nullptr);
  if (!left) return;
  autorelease(left);
  left->presenting_.reset();
  if (left->layer_) {
    left->layer_->hide();
    left->view()->setParent(nullptr);
    left->layer_->deleteLater();
    left->layer_ = nullptr;
  }
  if (layer_) setTakesInput(*layer_, true);
  if (UIWindow* const window = this->window()) reportTopLayer(*window);
  if (focusBelow_) {
    focusBelow_->setFocus(Qt::OtherFocusReason);
  } else if (view_) {
    view_->setFocus(Qt::OtherFocusReason);
  }
  call(completion);
}
