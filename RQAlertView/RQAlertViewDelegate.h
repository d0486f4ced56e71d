// What a dialog reports to its delegate.
#pragma once

#include "RQAlertView/RQAlertViewTypes.h"

#include <functional>

// Every member is optional: a function that is set responds. Set them before the delegate is handed to a
// dialog, which holds it weakly.
struct RQAlertViewDelegate {
  RQAlertViewHandler alertViewWillShow;
  RQAlertViewHandler alertViewDidShow;
  RQAlertViewHandler alertViewWillDismiss;
  RQAlertViewHandler alertViewDidDismiss;

  RQAlertViewActionHandler alertViewClickedButtonAtIndex;
  RQAlertViewHandler alertViewCancelled;
  RQAlertViewHandler alertViewDestructed;

  RQAlertViewActionHandler alertViewDidDismissAfterClickedButtonAtIndex;
  RQAlertViewHandler alertViewDidDismissAfterCancelled;
  RQAlertViewHandler alertViewDidDismissAfterDestructed;

  // Called inside the animation; `duration` in seconds.
  RQAlertViewAnimationsBlock showAnimationsForAlertView;
  RQAlertViewAnimationsBlock dismissAnimationsForAlertView;

  // Deprecated and never called: a dialog that gets a delegate with one of these warns in the system log.
  std::function<void(RQAlertView& alertView, const QString& title, std::size_t index)>
      alertViewButtonPressedWithTitle;
  RQAlertViewHandler alertViewDestructiveButtonPressed;
};
