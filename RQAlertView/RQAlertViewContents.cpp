#include "RQAlertView/RQAlertViewContents.h"

#include <utility>

RQAlertViewReports::RQAlertViewReports(RQAlertViewActionHandler actionHandler,
                                       RQAlertViewHandler cancelHandler,
                                       RQAlertViewHandler destructiveHandler)
    : action(std::move(actionHandler)),
      cancel(std::move(cancelHandler)),
      destructive(std::move(destructiveHandler)) {}

RQAlertViewReports::RQAlertViewReports(std::weak_ptr<RQAlertViewDelegate> delegate)
    : to(std::move(delegate)) {}
