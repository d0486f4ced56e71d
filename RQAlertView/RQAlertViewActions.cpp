// What the user does with a dialog, and to whom it is reported.
#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewFrame.h"
#include "RQAlertView/RQAlertViewStage.h"
#include "platform/EventBoundary.h"
#include "platform/NSNotificationCenter.h"

#include <cstdio>
#include <string>
#include <utility>

namespace {

QVariantMap actionInfo(std::size_t index, const QString& title) {
  return {{QStringLiteral("title"), title}, {QStringLiteral("index"), static_cast<qulonglong>(index)}};
}

// Marks an answer as being reported, for as long as it is.
class Answering {
 public:
  explicit Answering(bool& mark) : mark_(mark) { mark_ = true; }
  ~Answering() { mark_ = false; }
  Answering(const Answering&) = delete;
  Answering& operator=(const Answering&) = delete;

 private:
  bool& mark_;
};

}  // namespace

void RQAlertView::forceCancel() {
  if (cancelButtonTitle().isNull()) throw InternalInconsistency("Cancel button is not exists");
  cancelAction(buttonOfKind(RQAlertViewButtonKind::Cancel));
}

void RQAlertView::forceDestructive() {
  if (destructiveButtonTitle().isNull()) throw InternalInconsistency("Destructive button is not exists");
  destructiveAction(buttonOfKind(RQAlertViewButtonKind::Destructive));
}

void RQAlertView::forceActionAtIndex(std::size_t index) {
  if (index >= static_cast<std::size_t>(buttonTitles().size())) {
    throw InternalInconsistency("Button at index " + std::to_string(index) + " is not exists");
  }
  actionAction(index, buttonTitles().at(static_cast<qsizetype>(index)));
}

void RQAlertView::tapped(RQAlertViewButtonKind kind, std::size_t index) {
  if (state_ != RQAlertViewState::Shown) return;
  switch (kind) {
    case RQAlertViewButtonKind::Cancel:
      forceCancel();
      break;
    case RQAlertViewButtonKind::Destructive:
      forceDestructive();
      break;
    case RQAlertViewButtonKind::Action:
      forceActionAtIndex(index);
      break;
  }
}

void RQAlertView::coverTapped() {
  if (state_ != RQAlertViewState::Shown || !cancelOnTouch()) return;
  cancelAction(nullptr);
}

void RQAlertView::lastFieldEntered() {
  if (state_ != RQAlertViewState::Shown || buttonTitles().size() != 1 || !buttonsEnabled_.front()) return;
  forceActionAtIndex(0);
}

void RQAlertView::actionAction(std::size_t index, const QString& title) {
  answer(
      RQAlertViewButtonKind::Action, nullptr,
      [&](RQAlertView& self, const std::weak_ptr<RQAlertViewDelegate>& delegate) {
        self.reportAction(self.handlers_.actionHandler, delegate,
                          &RQAlertViewDelegate::alertViewClickedButtonAtIndex, RQAlertViewActionNotification,
                          index, title);
      },
      [index, title](RQAlertView& self, const std::weak_ptr<RQAlertViewDelegate>& delegate) {
        self.reportAction(self.handlers_.didDismissAfterActionHandler, delegate,
                          &RQAlertViewDelegate::alertViewDidDismissAfterClickedButtonAtIndex,
                          RQAlertViewDidDismissAfterActionNotification, index, title);
      });
}

void RQAlertView::cancelAction(RQAlertViewButton* sender) {
  answer(
      RQAlertViewButtonKind::Cancel, sender,
      [](RQAlertView& self, const std::weak_ptr<RQAlertViewDelegate>& delegate) {
        self.report(self.handlers_.cancelHandler, delegate, &RQAlertViewDelegate::alertViewCancelled,
                    RQAlertViewCancelNotification);
      },
      [](RQAlertView& self, const std::weak_ptr<RQAlertViewDelegate>& delegate) {
        self.report(self.handlers_.didDismissAfterCancelHandler, delegate,
                    &RQAlertViewDelegate::alertViewDidDismissAfterCancelled,
                    RQAlertViewDidDismissAfterCancelNotification);
      });
}

void RQAlertView::destructiveAction(RQAlertViewButton* sender) {
  answer(
      RQAlertViewButtonKind::Destructive, sender,
      [](RQAlertView& self, const std::weak_ptr<RQAlertViewDelegate>& delegate) {
        self.report(self.handlers_.destructiveHandler, delegate, &RQAlertViewDelegate::alertViewDestructed,
                    RQAlertViewDestructiveNotification);
      },
      [](RQAlertView& self, const std::weak_ptr<RQAlertViewDelegate>& delegate) {
        self.report(self.handlers_.didDismissAfterDestructiveHandler, delegate,
                    &RQAlertViewDelegate::alertViewDidDismissAfterDestructed,
                    RQAlertViewDidDismissAfterDestructiveNotification);
      });
}

RQAlertViewButton* RQAlertView::buttonOfKind(RQAlertViewButtonKind kind) const {
  return stage_ ? stage_->frame()->buttonOfKind(kind) : nullptr;
}

void RQAlertView::answer(RQAlertViewButtonKind kind, RQAlertViewButton* sender, const Report& now,
                         Report afterwards) {
  // On its way out the dialog takes no more answers, and an answer does not give itself once more.
  const bool leaving = state_ == RQAlertViewState::Dismissing || state_ == RQAlertViewState::Dismissed;
  bool& answeredAlready = answering_[static_cast<std::size_t>(kind)];
  if (leaving || answeredAlready) return;
  const std::shared_ptr<RQAlertView> alive = shared_from_this();
  const Answering answering(answeredAlready);
  const QPointer<RQAlertViewButton> marked(sender);
  if (marked) marked->setSelected(true);
  now(*this, delegate_);
  if (!dismissOnAction()) {
    if (marked) marked->setSelected(false);
    return;
  }
  // The dismissal clears the delegate, which is still to hear what comes after it.
  const std::weak_ptr<RQAlertViewDelegate> delegate = delegate_;
  dismissAnimated(shouldDismissAnimated(),
                  [alive, delegate, afterwards = std::move(afterwards)] { afterwards(*alive, delegate); });
}

void RQAlertView::report(const RQAlertViewHandler& handler,
                         const std::weak_ptr<RQAlertViewDelegate>& delegate, DelegateHandler method,
                         const QString& notification) {
  // Copies: a handler may set another one in its place.
  if (const RQAlertViewHandler called = handler) atEventBoundary(called)(*this);
  if (const auto to = delegate.lock(); to && (*to).*method) atEventBoundary((*to).*method)(*this);
  NSNotificationCenter::defaultCenter().postNotificationName(notification, this);
}

void RQAlertView::reportAction(const RQAlertViewActionHandler& handler,
                               const std::weak_ptr<RQAlertViewDelegate>& delegate,
                               RQAlertViewActionHandler RQAlertViewDelegate::*method,
                               const QString& notification, std::size_t index, const QString& title) {
  if (const RQAlertViewActionHandler called = handler) atEventBoundary(called)(*this, index, title);
  if (const auto to = delegate.lock(); to && (*to).*method)
    atEventBoundary((*to).*method)(*this, index, title);
  NSNotificationCenter::defaultCenter().postNotificationName(notification, this, actionInfo(index, title));
}

void RQAlertView::reportAnimations(const RQAlertViewAnimationsBlock& block,
                                   RQAlertViewAnimationsBlock RQAlertViewDelegate::*method,
                                   const QString& notification) {
  const double duration = animationDuration();
  NSNotificationCenter::defaultCenter().postNotificationName(notification, this,
                                                             {{QStringLiteral("duration"), duration}});
  if (const RQAlertViewAnimationsBlock called = block) atEventBoundary(called)(*this, duration);
  if (const auto to = delegate_.lock(); to && (*to).*method) atEventBoundary((*to).*method)(*this, duration);
}
