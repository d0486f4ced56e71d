// Every report of a dialog, and the three to whom it goes.
#pragma once

#include "RQAlertView/RQAlertViewDelegate.h"
#include "RQAlertView/RQAlertViewHandlers.h"
#include "RQAlertView/RQAlertViewNotifications.h"

// One report: the handler that is called, the delegate's function, and the notification that is posted.
template <typename Handler>
struct RQAlertViewReport {
  Handler RQAlertViewHandlers::*handler;
  Handler RQAlertViewDelegate::*method;
  const QString& notification;
};

namespace reports {

using Handlers = RQAlertViewHandlers;
using Delegate = RQAlertViewDelegate;

inline const RQAlertViewReport<RQAlertViewHandler> willShow{
    &Handlers::willShowHandler, &Delegate::alertViewWillShow, RQAlertViewWillShowNotification};
inline const RQAlertViewReport<RQAlertViewAnimationsBlock> showAnimations{
    &Handlers::showAnimationsBlock, &Delegate::showAnimationsForAlertView,
    RQAlertViewShowAnimationsNotification};
inline const RQAlertViewReport<RQAlertViewHandler> didShow{
    &Handlers::didShowHandler, &Delegate::alertViewDidShow, RQAlertViewDidShowNotification};
inline const RQAlertViewReport<RQAlertViewActionHandler> action{
    &Handlers::actionHandler, &Delegate::alertViewClickedButtonAtIndex, RQAlertViewActionNotification};
inline const RQAlertViewReport<RQAlertViewHandler> cancel{
    &Handlers::cancelHandler, &Delegate::alertViewCancelled, RQAlertViewCancelNotification};
inline const RQAlertViewReport<RQAlertViewHandler> destructive{
    &Handlers::destructiveHandler, &Delegate::alertViewDestructed, RQAlertViewDestructiveNotification};
inline const RQAlertViewReport<RQAlertViewHandler> willDismiss{
    &Handlers::willDismissHandler, &Delegate::alertViewWillDismiss, RQAlertViewWillDismissNotification};
inline const RQAlertViewReport<RQAlertViewAnimationsBlock> dismissAnimations{
    &Handlers::dismissAnimationsBlock, &Delegate::dismissAnimationsForAlertView,
    RQAlertViewDismissAnimationsNotification};
inline const RQAlertViewReport<RQAlertViewHandler> didDismiss{
    &Handlers::didDismissHandler, &Delegate::alertViewDidDismiss, RQAlertViewDidDismissNotification};
inline const RQAlertViewReport<RQAlertViewActionHandler> didDismissAfterAction{
    &Handlers::didDismissAfterActionHandler, &Delegate::alertViewDidDismissAfterClickedButtonAtIndex,
    RQAlertViewDidDismissAfterActionNotification};
inline const RQAlertViewReport<RQAlertViewHandler> didDismissAfterCancel{
    &Handlers::didDismissAfterCancelHandler, &Delegate::alertViewDidDismissAfterCancelled,
    RQAlertViewDidDismissAfterCancelNotification};
inline const RQAlertViewReport<RQAlertViewHandler> didDismissAfterDestructive{
    &Handlers::didDismissAfterDestructiveHandler, &Delegate::alertViewDidDismissAfterDestructed,
    RQAlertViewDidDismissAfterDestructiveNotification};

}  // namespace reports
