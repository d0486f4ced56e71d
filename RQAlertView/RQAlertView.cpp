#include "RQAlertView/RQAlertView.h"

#include "RQAlertView/RQAlertViewController.h"
#include "RQAlertView/RQAlertViewWindow.h"
#include "core/NSLog.h"

#include <algorithm>

RQAlertView::RQAlertView() = default;
RQAlertView::~RQAlertView() = default;
std::shared_ptr<RQAlertView> RQAlertView::alloc() {
  return std::shared_ptr<RQAlertView>(new RQAlertView);
}
std::shared_ptr<RQAlertView> RQAlertView::setUp(RQAlertViewContents contents, RQAlertViewReports reports) {
  contents_ = std::move(contents);
  delegate_ = reports.to;
  return shared_from_this();
}
void RQAlertView::appearanceChanged() {}
