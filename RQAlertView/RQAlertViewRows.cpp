#include "RQAlertView/RQAlertViewRows.h"

#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewHelper.h"

RQAlertViewRows::RQAlertViewRows(const RQAlertView& alertView)
    : destructive_(alertView.destructiveButtonTitle()), titles_(alertView.buttonTitles()) {
  if (!RQAlertViewHelper::isCancelButtonSeparate(alertView)) cancel_ = alertView.cancelButtonTitle();
}

int RQAlertViewRows::count() const {
  return static_cast<int>(titles_.size()) + (hasDestructive() ? 1 : 0) + (hasCancel() ? 1 : 0);
}

RQAlertViewRow RQAlertViewRows::at(int row) const {
  if (hasDestructive() && row == 0) return {RQAlertViewButtonKind::Destructive, 0, destructive_};
  if (hasCancel() && row == count() - 1) return {RQAlertViewButtonKind::Cancel, 0, cancel_};
  const int index = row - (hasDestructive() ? 1 : 0);
  return {RQAlertViewButtonKind::Action, static_cast<std::size_t>(index), titles_.at(index)};
}

int RQAlertViewRows::rowOfAction(std::size_t index) const {
  return static_cast<int>(index) + (hasDestructive() ? 1 : 0);
}
