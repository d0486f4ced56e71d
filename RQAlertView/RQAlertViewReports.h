// What a dialog reports: its handlers, its delegate, its notifications, and the table that joins them.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

#include <QString>

// what() is the message of the check that failed.
class InternalInconsistency : public std::logic_error {
 public:
  using std::logic_error::logic_error;
};

class RQAlertView;

using RQAlertViewHandler = std::function<void(RQAlertView& alertView)>;
using RQAlertViewActionHandler =
    std::function<void(RQAlertView& alertView, std::size_t index, const QString& title)>;
// `duration` in seconds.
using RQAlertViewAnimationsBlock = std::function<void(RQAlertView& alertView, double duration)>;
using RQAlertViewCompletionHandler = std::function<void()>;

// Each is optional.
struct RQAlertViewHandlers {
  RQAlertViewHandler willShowHandler, didShowHandler, willDismissHandler, didDismissHandler{};
  RQAlertViewActionHandler actionHandler{}, didDismissAfterActionHandler{};
  RQAlertViewHandler cancelHandler{}, didDismissAfterCancelHandler{};
  RQAlertViewHandler destructiveHandler{}, didDismissAfterDestructiveHandler{};
  RQAlertViewAnimationsBlock showAnimationsBlock{}, dismissAnimationsBlock{};
};

// Every member is optional: a function that is set responds. Set them before the delegate is handed to a
// dialog, which holds it weakly.
struct RQAlertViewDelegate {
  RQAlertViewHandler alertViewWillShow, alertViewDidShow, alertViewWillDismiss, alertViewDidDismiss;
  RQAlertViewActionHandler alertViewClickedButtonAtIndex, alertViewDidDismissAfterClickedButtonAtIndex;
  RQAlertViewHandler alertViewCancelled, alertViewDidDismissAfterCancelled;
  RQAlertViewHandler alertViewDestructed, alertViewDidDismissAfterDestructed;
  // Called inside the animation.
  RQAlertViewAnimationsBlock showAnimationsForAlertView, dismissAnimationsForAlertView;

  // Deprecated and never called: a dialog that gets a delegate with one of these warns in the system log.
  std::function<void(RQAlertView& alertView, const QString& title, std::size_t index)>
      alertViewButtonPressedWithTitle;
  RQAlertViewHandler alertViewDestructiveButtonPressed;
};

// The first receivers of a new dialog: none, three handlers, or a delegate.
struct RQAlertViewRecipients {
  RQAlertViewRecipients() = default;
  RQAlertViewRecipients(RQAlertViewActionHandler action, RQAlertViewHandler cancel,
                        RQAlertViewHandler destructive)
      : actionHandler(std::move(action)),
        cancelHandler(std::move(cancel)),
        destructiveHandler(std::move(destructive)) {}
  explicit RQAlertViewRecipients(std::weak_ptr<RQAlertViewDelegate> to) : delegate(std::move(to)) {}

  RQAlertViewActionHandler actionHandler;
  RQAlertViewHandler cancelHandler, destructiveHandler;
  std::weak_ptr<RQAlertViewDelegate> delegate;
};

// One report: the handler and the delegate's function that are called, and the notification that is posted on
// the default centre with the dialog as object. userInfo of an action: "title" (QString) and "index"
// (qulonglong); of animations: "duration" (double, seconds).
template <typename Handler>
struct RQAlertViewReport {
  Handler RQAlertViewHandlers::*handler;
  Handler RQAlertViewDelegate::*method;
  const char* notification;
};

namespace reports {

using H = RQAlertViewHandlers;
using D = RQAlertViewDelegate;
using Plain = RQAlertViewReport<RQAlertViewHandler>;
using Action = RQAlertViewReport<RQAlertViewActionHandler>;
using Animations = RQAlertViewReport<RQAlertViewAnimationsBlock>;

inline constexpr Plain willShow{&H::willShowHandler, &D::alertViewWillShow,
                                "RQAlertViewWillShowNotification"};
inline constexpr Animations showAnimations{&H::showAnimationsBlock, &D::showAnimationsForAlertView,
                                           "RQAlertViewShowAnimationsNotification"};
inline constexpr Plain didShow{&H::didShowHandler, &D::alertViewDidShow, "RQAlertViewDidShowNotification"};
inline constexpr Action action{&H::actionHandler, &D::alertViewClickedButtonAtIndex,
                               "RQAlertViewActionNotification"};
inline constexpr Plain cancel{&H::cancelHandler, &D::alertViewCancelled, "RQAlertViewCancelNotification"};
inline constexpr Plain destructive{&H::destructiveHandler, &D::alertViewDestructed,
                                   "RQAlertViewDestructiveNotification"};
inline constexpr Plain willDismiss{&H::willDismissHandler, &D::alertViewWillDismiss,
                                   "RQAlertViewWillDismissNotification"};
inline constexpr Animations dismissAnimations{&H::dismissAnimationsBlock, &D::dismissAnimationsForAlertView,
                                              "RQAlertViewDismissAnimationsNotification"};
inline constexpr Plain didDismiss{&H::didDismissHandler, &D::alertViewDidDismiss,
                                  "RQAlertViewDidDismissNotification"};
inline constexpr Action didDismissAfterAction{&H::didDismissAfterActionHandler,
                                              &D::alertViewDidDismissAfterClickedButtonAtIndex,
                                              "RQAlertViewDidDismissAfterActionNotification"};
inline constexpr Plain didDismissAfterCancel{&H::didDismissAfterCancelHandler,
                                             &D::alertViewDidDismissAfterCancelled,
                                             "RQAlertViewDidDismissAfterCancelNotification"};
inline constexpr Plain didDismissAfterDestructive{&H::didDismissAfterDestructiveHandler,
                                                  &D::alertViewDidDismissAfterDestructed,
                                                  "RQAlertViewDidDismissAfterDestructiveNotification"};

}  // namespace reports
