// The looks of a dialog's buttons, taken from its appearance.
#include "RQAlertView/RQAlertView.h"

#include <algorithm>

// The appearance has the same fourteen properties for each kind of button, told apart by how they begin.
#define RQ_LOOK(beginning)                                                                      \
  RQAlertViewButtonLook {                                                                       \
    .titleColor = appearance_.beginning##TitleColor,                                            \
    .titleColorHighlighted = appearance_.beginning##TitleColorHighlighted,                      \
    .titleColorDisabled = appearance_.beginning##TitleColorDisabled,                            \
    .backgroundColor = appearance_.beginning##BackgroundColor,                                  \
    .backgroundColorHighlighted = appearance_.beginning##BackgroundColorHighlighted,            \
    .backgroundColorDisabled = appearance_.beginning##BackgroundColorDisabled,                  \
    .textAlignment = appearance_.beginning##TextAlignment, .font = appearance_.beginning##Font, \
    .numberOfLines = appearance_.beginning##NumberOfLines,                                      \
    .lineBreakMode = appearance_.beginning##LineBreakMode,                                      \
    .minimumScaleFactor = appearance_.beginning##MinimumScaleFactor,                            \
    .adjustsFontSizeToFitWidth = appearance_.beginning##AdjustsFontSizeToFitWidth,              \
    .iconPosition = appearance_.beginning##IconPosition                                         \
  }

RQAlertViewButtonLook RQAlertView::buttonsLook(RQAlertViewButtonKind kind) const {
  switch (kind) {
    case RQAlertViewButtonKind::Cancel: {
      RQAlertViewButtonLook look = RQ_LOOK(cancelButton);
      look.iconImage = appearance_.cancelButtonIconImage;
      return look;
    }
    case RQAlertViewButtonKind::Destructive: {
      RQAlertViewButtonLook look = RQ_LOOK(destructiveButton);
      look.iconImage = appearance_.destructiveButtonIconImage;
      return look;
    }
    case RQAlertViewButtonKind::Action:
      break;
  }
  return RQ_LOOK(buttons);
}

RQAlertViewButtonLook RQAlertView::buttonLook(const RQAlertViewRow& row) const {
  RQAlertViewButtonLook look = buttonsLook(row.kind);
  if (row.kind == RQAlertViewButtonKind::Action) {
    const auto own = buttonProperties_.find(row.index);
    if (own != buttonProperties_.end()) own->second.applyTo(look);
  }
  return look;
}

bool RQAlertView::isButtonEnabled(const RQAlertViewRow& row) const {
  switch (row.kind) {
    case RQAlertViewButtonKind::Cancel:
      return cancelButtonEnabled();
    case RQAlertViewButtonKind::Destructive:
      return destructiveButtonEnabled();
    case RQAlertViewButtonKind::Action:
      break;
  }
  return row.index < buttonsEnabled_.size() && buttonsEnabled_[row.index];
}

bool RQAlertView::hasUniformRows() const {
  const auto oneLine = [this](RQAlertViewButtonKind kind) { return buttonsLook(kind).numberOfLines == 1; };
  return oneLine(RQAlertViewButtonKind::Action) && oneLine(RQAlertViewButtonKind::Cancel) &&
         oneLine(RQAlertViewButtonKind::Destructive) &&
         std::none_of(buttonProperties_.begin(), buttonProperties_.end(), [](const auto& entry) {
           const RQAlertViewButtonProperties& own = entry.second;
           return own.numberOfLines || own.font || own.iconImage;
         });
}
