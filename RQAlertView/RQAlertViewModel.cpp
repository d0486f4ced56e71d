#include "RQAlertView/RQAlertViewModel.h"

#include "RQAlertView/RQAlertViewHelper.h"
#include "platform/UIWindow.h"

#include <algorithm>

int RQAlertViewRows::count() const {
  return static_cast<int>(titles.size()) + (destructive.isNull() ? 0 : 1) + (cancel.isNull() ? 0 : 1);
}

RQAlertViewRow RQAlertViewRows::at(int row) const {
  if (!destructive.isNull() && row == 0) return {RQAlertViewButtonKind::Destructive, 0, destructive};
  if (!cancel.isNull() && row == count() - 1) return {RQAlertViewButtonKind::Cancel, 0, cancel};
  const int index = row - (destructive.isNull() ? 0 : 1);
  return {RQAlertViewButtonKind::Action, static_cast<std::size_t>(index), titles.at(index)};
}

RQAlertViewRows RQAlertViewModel::rows() const {
  const bool separate = RQAlertViewHelper::isCancelButtonSeparate(*this);
  return {destructiveButtonTitle, buttonTitles, separate ? QString() : cancelButtonTitle};
}

RQAlertViewButtonLook RQAlertViewModel::lookOf(const RQAlertViewRow& row) const {
  if (row.kind == RQAlertViewButtonKind::Cancel) return appearance.cancelButton;
  if (row.kind == RQAlertViewButtonKind::Destructive) return appearance.destructiveButton;
  const auto own = buttonProperties.find(row.index);
  RQAlertViewButtonLook look =
      own == buttonProperties.end() ? appearance.buttons : own->second.appliedTo(appearance.buttons);
  look.enabled = isEnabled(row);
  return look;
}

bool RQAlertViewModel::isEnabled(const RQAlertViewRow& row) const {
  if (row.kind == RQAlertViewButtonKind::Cancel) return appearance.cancelButton.enabled;
  if (row.kind == RQAlertViewButtonKind::Destructive) return appearance.destructiveButton.enabled;
  return row.index < buttonsEnabled.size() && buttonsEnabled[row.index];
}

bool RQAlertViewModel::hasUniformRows() const {
  return appearance.buttons.numberOfLines == 1 && appearance.cancelButton.numberOfLines == 1 &&
         appearance.destructiveButton.numberOfLines == 1 &&
         std::none_of(buttonProperties.begin(), buttonProperties.end(), [](const auto& entry) {
           const RQAlertViewButtonProperties& own = entry.second;
           return own.numberOfLines || own.font || own.iconImage;
         });
}

double RQAlertViewModel::width() const {
  const UIWindow* window = RQAlertViewHelper::appWindow();
  const QSize bounds = window ? window->size() : UIScreen::mainScreen()->size();
  const double most = std::min(bounds.width(), bounds.height());
  if (appearance.width != RQAlertViewNotSet) return std::min(appearance.width, most);
  if (!RQAlertViewHelper::comesFromBottom(*this)) return RQAlertViewMetrics::alertWidth;
  return RQAlertViewHelper::isPad() ? RQAlertViewMetrics::padActionSheetWidth
                                    : most - RQAlertViewMetrics::actionSheetSideMargins;
}
