// The look of a dialog's buttons, and what a single button may have of its own.
#pragma once

#include "platform/ApplicationStyle.h"

#include <functional>
#include <optional>

#include <QColor>
#include <QFont>
#include <QPixmap>

enum class RQAlertViewButtonIconPosition { Left = 0, Right = 1 };

// The whole look of a button, with the values that each kind of button starts from. An invalid colour means
// none.
struct RQAlertViewButtonLook {
  QColor titleColor;
  QColor titleColorHighlighted = Qt::white;
  QColor titleColorDisabled = grey(127.5);
  QColor backgroundColor = Qt::transparent;
  QColor backgroundColorHighlighted = titleColor;
  QColor backgroundColorDisabled{};
  NSTextAlignment textAlignment = NSTextAlignment::Center;
  QFont font{};
  int numberOfLines = 1;
  NSLineBreakMode lineBreakMode = NSLineBreakMode::ByTruncatingMiddle;
  double minimumScaleFactor = 14.0 / 18.0;
  bool adjustsFontSizeToFitWidth = true;
  RQAlertViewButtonIconPosition iconPosition = RQAlertViewButtonIconPosition::Left;
  QPixmap iconImage{}, iconImageHighlighted{}, iconImageDisabled{};
  bool enabled = true;
};

// What one button has of its own; an absent value leaves that of the dialog's buttons.
struct RQAlertViewButtonProperties {
  std::optional<QColor> titleColor, titleColorHighlighted, titleColorDisabled;
  std::optional<QColor> backgroundColor, backgroundColorHighlighted, backgroundColorDisabled;
  std::optional<NSTextAlignment> textAlignment;
  std::optional<QFont> font;
  std::optional<int> numberOfLines;
  std::optional<NSLineBreakMode> lineBreakMode;
  std::optional<double> minimumScaleFactor;
  std::optional<bool> adjustsFontSizeToFitWidth;
  std::optional<RQAlertViewButtonIconPosition> iconPosition;
  std::optional<QPixmap> iconImage, iconImageHighlighted, iconImageDisabled;
  std::optional<bool> enabled;

  [[nodiscard]] RQAlertViewButtonLook appliedTo(const RQAlertViewButtonLook& look) const {
    return {
        .titleColor = titleColor.value_or(look.titleColor),
        .titleColorHighlighted = titleColorHighlighted.value_or(look.titleColorHighlighted),
        .titleColorDisabled = titleColorDisabled.value_or(look.titleColorDisabled),
        .backgroundColor = backgroundColor.value_or(look.backgroundColor),
        .backgroundColorHighlighted = backgroundColorHighlighted.value_or(look.backgroundColorHighlighted),
        .backgroundColorDisabled = backgroundColorDisabled.value_or(look.backgroundColorDisabled),
        .textAlignment = textAlignment.value_or(look.textAlignment),
        .font = font.value_or(look.font),
        .numberOfLines = numberOfLines.value_or(look.numberOfLines),
        .lineBreakMode = lineBreakMode.value_or(look.lineBreakMode),
        .minimumScaleFactor = minimumScaleFactor.value_or(look.minimumScaleFactor),
        .adjustsFontSizeToFitWidth = adjustsFontSizeToFitWidth.value_or(look.adjustsFontSizeToFitWidth),
        .iconPosition = iconPosition.value_or(look.iconPosition),
        .iconImage = iconImage.value_or(look.iconImage),
        .iconImageHighlighted = iconImageHighlighted.value_or(look.iconImageHighlighted),
        .iconImageDisabled = iconImageDisabled.value_or(look.iconImageDisabled)};
  }
};

using RQAlertViewButtonPropertiesHandler = std::function<void(RQAlertViewButtonProperties& properties)>;
