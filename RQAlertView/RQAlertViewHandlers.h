// The handlers of a dialog.
#pragma once

#include "RQAlertView/RQAlertViewTypes.h"

// One row for each handler: type, name, the name's form in the setter. All are optional.
// clang-format off
#define RQ_ALERT_VIEW_HANDLERS(HANDLER)                                                             \
  HANDLER(RQAlertViewActionHandler, actionHandler, ActionHandler)                                   \
  HANDLER(RQAlertViewHandler, cancelHandler, CancelHandler)                                         \
  HANDLER(RQAlertViewHandler, destructiveHandler, DestructiveHandler)                               \
  HANDLER(RQAlertViewHandler, willShowHandler, WillShowHandler)                                     \
  HANDLER(RQAlertViewHandler, didShowHandler, DidShowHandler)                                       \
  HANDLER(RQAlertViewHandler, willDismissHandler, WillDismissHandler)                               \
  HANDLER(RQAlertViewHandler, didDismissHandler, DidDismissHandler)                                 \
  HANDLER(RQAlertViewActionHandler, didDismissAfterActionHandler, DidDismissAfterActionHandler)     \
  HANDLER(RQAlertViewHandler, didDismissAfterCancelHandler, DidDismissAfterCancelHandler)           \
  HANDLER(RQAlertViewHandler, didDismissAfterDestructiveHandler, DidDismissAfterDestructiveHandler) \
  HANDLER(RQAlertViewAnimationsBlock, showAnimationsBlock, ShowAnimationsBlock)                     \
  HANDLER(RQAlertViewAnimationsBlock, dismissAnimationsBlock, DismissAnimationsBlock)
// clang-format on

struct RQAlertViewHandlers {
#define RQ_MEMBER(Type, name, Name) Type name;
  RQ_ALERT_VIEW_HANDLERS(RQ_MEMBER)
#undef RQ_MEMBER
};
