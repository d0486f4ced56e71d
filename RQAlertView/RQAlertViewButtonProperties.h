// The look of a single button.
#pragma once

#include "RQAlertView/RQAlertViewReports.h"
#include "platform/UITextTraits.h"

#include <optional>

#include <QColor>
#include <QFont>
#include <QPixmap>

// One row for each property: type and name. An invalid colour means none.
#define RQ_ALERT_VIEW_BUTTON_PROPERTIES(PROPERTY)       \
  PROPERTY(QColor, titleColor)                          \
  PROPERTY(QColor, titleColorHighlighted)               \
  PROPERTY(QColor, titleColorDisabled)                  \
  PROPERTY(QColor, backgroundColor)                     \
  PROPERTY(QColor, backgroundColorHighlighted)          \
  PROPERTY(QColor, backgroundColorDisabled)             \
  PROPERTY(NSTextAlignment, textAlignment)              \
  PROPERTY(QFont, font)                                 \
  PROPERTY(int, numberOfLines)                          \
  PROPERTY(NSLineBreakMode, lineBreakMode)              \
  PROPERTY(double, minimumScaleFactor)                  \
  PROPERTY(bool, adjustsFontSizeToFitWidth)             \
  PROPERTY(RQAlertViewButtonIconPosition, iconPosition) \
  PROPERTY(QPixmap, iconImage)                          \
  PROPERTY(QPixmap, iconImageHighlighted)               \
  PROPERTY(QPixmap, iconImageDisabled)

// The whole look of a button, as it is painted.
struct RQAlertViewButtonLook {
#define RQ_MEMBER(Type, name) Type name{};
  RQ_ALERT_VIEW_BUTTON_PROPERTIES(RQ_MEMBER)
#undef RQ_MEMBER
};

// What one button has of its own; an absent value leaves that of the dialog's buttons.
struct RQAlertViewButtonProperties {
#define RQ_MEMBER(Type, name) std::optional<Type> name;
  RQ_ALERT_VIEW_BUTTON_PROPERTIES(RQ_MEMBER)
#undef RQ_MEMBER
  std::optional<bool> enabled;

  void applyTo(RQAlertViewButtonLook& look) const {
#define RQ_APPLY(Type, name) \
  if (name) (look).name = *(name);
    RQ_ALERT_VIEW_BUTTON_PROPERTIES(RQ_APPLY)
#undef RQ_APPLY
  }
};
