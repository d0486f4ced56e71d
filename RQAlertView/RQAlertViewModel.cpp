#include "RQAlertView/RQAlertViewModel.h"

#include "RQAlertView/RQAlertViewHelper.h"
#include "platform/UIWindow.h"

#include <algorithm>

QList<RQAlertViewRow> RQAlertViewModel::rows() const {
  QList<RQAlertViewRow> rows;
  if (!destructiveButtonTitle.isNull())
    rows.append({RQAlertViewButtonKind::Destructive, 0, destructiveButtonTitle});
  std::size_t index = 0;
  for (const QString& text : buttonTitles) rows.append({RQAlertViewButtonKind::Action, index++, text});
  if (!cancelButtonTitle.isNull() && !RQAlertViewHelper::isCancelButtonSeparate(*this))
    rows.append(cancelRow());
  return rows;
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
