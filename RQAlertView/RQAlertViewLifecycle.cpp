// How a dialog comes and goes.
#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewContent.h"
#include "RQAlertView/RQAlertViewController.h"
#include "RQAlertView/RQAlertViewFrame.h"
#include "RQAlertView/RQAlertViewStage.h"
#include "RQAlertView/RQAlertViewWindow.h"
#include "RQAlertView/RQAlertViewWindowsObserver.h"
#include "platform/Autorelease.h"
#include "platform/EventBoundary.h"
#include "platform/NSNotificationCenter.h"
#include "platform/UIApplication.h"
#include "platform/UIKeyboard.h"
#include "platform/dispatch.h"

#include <algorithm>
#include <utility>

#include <QGuiApplication>

namespace {

// Whether a dialog that is shown lies below `window`.
bool coversDialog(const UIWindow* window) {
  const auto& stack = RQAlertViewWindowsObserver::sharedInstance()->windowsArray();
  return std::any_of(stack.begin(), stack.end(), [window](const RQAlertViewWindowContainer& container) {
    const std::shared_ptr<UIWindow> other = container.window();
    if (!other || other.get() == window) return false;
    const auto* controller = qobject_cast<RQAlertViewController*>(other->rootViewController().get());
    const std::shared_ptr<RQAlertView> dialog = controller ? controller->alertView() : nullptr;
    return dialog && dialog->isShowing();
  });
}

void call(const RQAlertViewCompletionHandler& completionHandler) {
  if (completionHandler) atEventBoundary(completionHandler)();
}

}  // namespace

bool RQAlertView::isShowing() const {
  return state_ == RQAlertViewState::Showing || state_ == RQAlertViewState::Shown;
}

void RQAlertView::show() {
  showAnimated(false, false, {});
}

void RQAlertView::showAnimated() {
  showAnimated(true, false, {});
}

void RQAlertView::showAnimated(bool animated, RQAlertViewCompletionHandler completionHandler) {
  showAnimated(animated, false, std::move(completionHandler));
}

void RQAlertView::showAnimated(bool animated, bool hidden, RQAlertViewCompletionHandler completionHandler) {
  requireInitialized();
  if (stage_ && state_ == RQAlertViewState::Made) stage_->setVisible(!hidden);
  showBy([this](double duration, auto finished) { stage_->bringIn(duration, std::move(finished)); }, animated,
         std::move(completionHandler));
}

void RQAlertView::showBy(const Entrance& entrance, bool animated,
                         RQAlertViewCompletionHandler completionHandler) {
  if (state_ != RQAlertViewState::Made || !window_) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  keptAlive_ = alive;
  state_ = RQAlertViewState::Showing;
  stage_->setKeyboardFrame(UIKeyboard::frame().toAlignedRect(), 0, QEasingCurve::Linear);
  stage_->layoutSubviews();
  stage_->setCoversDialog(coversDialog(window_.get()));
  if (UIWindow* keyWindow = UIApplication::sharedApplication()->keyWindow()) keyWindow->endEditing();
  window_->makeKeyAndVisible();
  addObservers();
  report(handlers_.willShowHandler, delegate_, &RQAlertViewDelegate::alertViewWillShow,
         RQAlertViewWillShowNotification);
  if (animated && state_ == RQAlertViewState::Showing) {
    reportAnimations(handlers_.showAnimationsBlock, &RQAlertViewDelegate::showAnimationsForAlertView,
                     RQAlertViewShowAnimationsNotification);
  }
  if (state_ != RQAlertViewState::Showing) {
    // A report has dismissed the dialog.
    call(completionHandler);
    return;
  }
  entrance(animated ? animationDuration() : 0,
           [this, completionHandler = std::move(completionHandler)] { showComplete(completionHandler); });
}

void RQAlertView::transitionToAlertView(const std::shared_ptr<RQAlertView>& alertView) {
  transitionToAlertView(alertView, {});
}

void RQAlertView::transitionToAlertView(const std::shared_ptr<RQAlertView>& alertView,
                                        RQAlertViewCompletionHandler completionHandler) {
  if (!alertView) return;
  alertView->requireInitialized();
  if (alertView.get() == this || alertView->state_ != RQAlertViewState::Made) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  if (state_ == RQAlertViewState::Showing && stage_) stage_->finishMotion();
  // A did-show report may have dismissed this dialog, or used the other one up.
  if (alertView->state_ != RQAlertViewState::Made) return;
  if (!isShowing() || !stage_) {
    alertView->showAnimated(true, std::move(completionHandler));
    return;
  }
  // The other dialog covers this one already; the picture is to show it as it was before.
  const bool enabled = !window_ || window_->isEnabled();
  if (window_) window_->setEnabled(true);
  const QPixmap picture = stage_->picture();
  if (window_) window_->setEnabled(enabled);
  const QRect place = stage_->frame()->geometry();
  // It goes as a dialog in sight does, though the other one's window may hide its own.
  beginDismissal();
  dismissComplete({});
  alertView->showBy(
      [&](double duration, auto finished) {
        alertView->stage_->changeFrom(picture, place, duration, std::move(finished));
      },
      true, std::move(completionHandler));
}

void RQAlertView::showComplete(const RQAlertViewCompletionHandler& completionHandler) {
  if (state_ != RQAlertViewState::Showing) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  state_ = RQAlertViewState::Shown;
  // Covered meanwhile by another dialog, it takes the focus when it comes back.
  takeFocus();
  report(handlers_.didShowHandler, delegate_, &RQAlertViewDelegate::alertViewDidShow,
         RQAlertViewDidShowNotification);
  call(completionHandler);
}

void RQAlertView::takeFocus() {
  if (state_ != RQAlertViewState::Shown || !window_ || !window_->isKeyWindow()) return;
  const auto fields = textFieldsArray();
  if (type() == RQAlertViewType::TextFields && !fields.empty()) {
    fields.front()->becomeFirstResponder();
  } else {
    stage_->frame()->initialFocus()->setFocus(Qt::OtherFocusReason);
  }
}

void RQAlertView::dismiss() {
  dismissAnimated(false);
}

void RQAlertView::dismissAnimated() {
  dismissAnimated(true);
}

void RQAlertView::dismissAnimated(bool animated, RQAlertViewCompletionHandler completionHandler) {
  if (!isShowing()) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  // A show that still moves ends as any other does, with all its reports.
  if (state_ == RQAlertViewState::Showing && stage_) stage_->finishMotion();
  if (!isShowing()) return;
  if (!window_ || window_->isHidden()) {
    state_ = RQAlertViewState::Dismissing;
    dismissComplete(completionHandler);
    return;
  }
  beginDismissal();
  if (animated) {
    reportAnimations(handlers_.dismissAnimationsBlock, &RQAlertViewDelegate::dismissAnimationsForAlertView,
                     RQAlertViewDismissAnimationsNotification);
  }
  if (!stage_) {
    dismissComplete(completionHandler);
    return;
  }
  stage_->takeOut(
      animated ? animationDuration() : 0,
      [this, completionHandler = std::move(completionHandler)] { dismissComplete(completionHandler); });
}

void RQAlertView::beginDismissal() {
  state_ = RQAlertViewState::Dismissing;
  window_->endEditing();
  report(handlers_.willDismissHandler, delegate_, &RQAlertViewDelegate::alertViewWillDismiss,
         RQAlertViewWillDismissNotification);
}

void RQAlertView::dismissComplete(const RQAlertViewCompletionHandler& completionHandler) {
  if (state_ != RQAlertViewState::Dismissing) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  state_ = RQAlertViewState::Dismissed;
  removeObservers();
  if (window_) window_->setHidden(true);
  report(handlers_.didDismissHandler, delegate_, &RQAlertViewDelegate::alertViewDidDismiss,
         RQAlertViewDidDismissNotification);
  releaseViews();
  delegate_.reset();
  call(completionHandler);
}

void RQAlertView::releaseViews() {
  if (window_) window_->disconnect(this);
  if (stage_) stage_->keep(std::move(keptAlive_));
  viewController_.reset();
  window_.reset();
}

void RQAlertView::windowGone() {
  // Somebody has destroyed the window, most likely the application's end: there is nothing left to show.
  state_ = RQAlertViewState::Dismissed;
  removeObservers();
  viewController_.reset();
  window_.reset();
  autorelease(std::move(keptAlive_));
}

void RQAlertView::addObservers() {
  NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
  for (const QString& name : {UIKeyboardWillShowNotification, UIKeyboardWillHideNotification,
                              UIKeyboardWillChangeFrameNotification}) {
    const auto changed = name == UIKeyboardWillChangeFrameNotification ? &RQAlertView::keyboardFrameChanged
                                                                       : &RQAlertView::keyboardVisibleChanged;
    center.addObserver(this, name, nullptr, [this, changed](const NSNotification& notification) {
      (this->*changed)(notification);
    });
  }
  center.addObserver(this, UIWindowDidBecomeVisibleNotification, nullptr,
                     [this](const NSNotification& notification) { windowVisibleChanged(notification); });
  center.addObserver(this, UIWindowDidBecomeKeyNotification, window_.get(), [this](const NSNotification&) {
    // What had the focus may have gone while another dialog covered this one.
    const QWidget* focused = stage_->window()->focusWidget();
    if (!focused || !stage_->frame()->isAncestorOf(focused)) takeFocus();
  });
}

void RQAlertView::removeObservers() {
  NSNotificationCenter::defaultCenter().removeObserver(this);
}

void RQAlertView::keyboardVisibleChanged(const NSNotification& notification) {
  const bool hides = notification.name == UIKeyboardWillHideNotification;
  moveFor(hides ? QRectF() : notification.userInfo.value(UIKeyboardFrameEndUserInfoKey).toRectF(),
          notification);
}

void RQAlertView::keyboardFrameChanged(const NSNotification& notification) {
  moveFor(notification.userInfo.value(UIKeyboardFrameEndUserInfoKey).toRectF(), notification);
}

void RQAlertView::moveFor(const QRectF& keyboard, const NSNotification& notification) {
  if (!isShowing() || !window_ || window_->isHidden()) return;
  stage_->setKeyboardFrame(
      keyboard.toAlignedRect(),
      notification.userInfo.value(UIKeyboardAnimationDurationUserInfoKey).toDouble(),
      static_cast<QEasingCurve::Type>(
          notification.userInfo.value(UIKeyboardAnimationCurveUserInfoKey, QEasingCurve::OutCubic).toInt()));
}

void RQAlertView::windowVisibleChanged(const NSNotification& notification) {
  const auto* other = qobject_cast<UIWindow*>(notification.object);
  if (other && other == window_.get()) {
    // Uncovered again: the keyboard may have come or gone meanwhile.
    stage_->setKeyboardFrame(UIKeyboard::frame().toAlignedRect(), 0, QEasingCurve::Linear);
    return;
  }
  if (!other || !window_ || window_->isHidden() || qobject_cast<const RQAlertViewWindow*>(other) ||
      other->windowLevel() > window_->windowLevel()) {
    return;
  }
  // A window that comes up below a dialog does not take the input from it.
  dispatch_after(0, dispatch_get_main_queue(), [weak = weak_from_this()] {
    const std::shared_ptr<RQAlertView> self = weak.lock();
    if (self && self->isShowing() && self->window_ && !self->window_->isHidden()) {
      self->window_->makeKeyAndVisible();
    }
  });
}
