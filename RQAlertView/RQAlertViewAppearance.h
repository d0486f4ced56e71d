// The appearance of a dialog: every property with the value it starts from.
#pragma once

#include "RQAlertView/RQAlertViewCell.h"
#include "RQAlertView/RQAlertViewHelper.h"
#include "RQAlertView/RQAlertViewTypes.h"
#include "platform/UIActivityIndicatorView.h"
#include "platform/UIFont.h"
#include "platform/UITextTraits.h"

#include <cstdint>
#include <memory>
#include <optional>

#include <QColor>
#include <QFont>
#include <QPixmap>
#include <QPointF>

// A length that is not set.
inline constexpr double RQAlertViewNotSet = static_cast<double>(INT64_MAX);

// One row for each property: type, name, the name's form in the setter, starting value. Lengths are logical
// pixels, durations seconds; an invalid colour or an empty picture means none. A value may name a property
// above it: the button colours are the tint as it is when the object is made. A blur is a picture of the
// application's window below the colour of the same place, so it is seen as far as coverColor or
// backgroundColor, which is opaque to start with, is see-through.
// clang-format off
#define RQ_ALERT_VIEW_APPEARANCE(PROPERTY)                                                                      \
  PROPERTY(std::shared_ptr<RQAlertViewCell>, heightCell, HeightCell, std::make_shared<RQAlertViewCell>())       \
  PROPERTY(RQAlertViewWindowLevel, windowLevel, WindowLevel, RQAlertViewWindowLevel::AboveStatusBar)            \
  PROPERTY(bool, dismissOnAction, DismissOnAction, true)                                                        \
  PROPERTY(QColor, tintColor, TintColor, RQAlertViewHelper::rgb(0, 0.5, 1))                                     \
  PROPERTY(QColor, coverColor, CoverColor, RQAlertViewHelper::white(0, 0.35))                                   \
  PROPERTY(std::optional<UIBlurEffectStyle>, coverBlurEffect, CoverBlurEffect, std::nullopt)                    \
  PROPERTY(double, coverAlpha, CoverAlpha, 1.0)                                                                 \
  PROPERTY(QColor, backgroundColor, BackgroundColor, QColor(Qt::white))                                         \
  PROPERTY(std::optional<UIBlurEffectStyle>, backgroundBlurEffect, BackgroundBlurEffect, std::nullopt)          \
  PROPERTY(double, textFieldsHeight, TextFieldsHeight, 44)                                                      \
  PROPERTY(double, offsetVertical, OffsetVertical, 8)                                                           \
  PROPERTY(double, cancelButtonOffsetY, CancelButtonOffsetY, 8)                                                 \
  PROPERTY(double, heightMax, HeightMax, RQAlertViewNotSet)                                                     \
  PROPERTY(QColor, separatorsColor, SeparatorsColor, RQAlertViewHelper::white(0.85))                            \
  PROPERTY(UIScrollViewIndicatorStyle, indicatorStyle, IndicatorStyle, UIScrollViewIndicatorStyle::Black)       \
  PROPERTY(bool, showsVerticalScrollIndicator, ShowsVerticalScrollIndicator, false)                             \
  PROPERTY(bool, padShowsActionSheetFromBottom, PadShowsActionSheetFromBottom, false)                           \
  PROPERTY(bool, oneRowOneButton, OneRowOneButton, false)                                                       \
  PROPERTY(bool, shouldDismissAnimated, ShouldDismissAnimated, true)                                            \
  PROPERTY(double, layerCornerRadius, LayerCornerRadius, RQAlertViewHelper::systemVersion() < 9.0 ? 6 : 12)     \
  PROPERTY(QColor, layerBorderColor, LayerBorderColor, QColor())                                                \
  PROPERTY(double, layerBorderWidth, LayerBorderWidth, 0)                                                       \
  PROPERTY(QColor, layerShadowColor, LayerShadowColor, QColor())                                                \
  PROPERTY(double, layerShadowRadius, LayerShadowRadius, 0)                                                     \
  PROPERTY(QPointF, layerShadowOffset, LayerShadowOffset, QPointF())                                            \
  PROPERTY(double, animationDuration, AnimationDuration, 0.5)                                                   \
  PROPERTY(double, initialScale, InitialScale, 1.2)                                                             \
  PROPERTY(double, finalScale, FinalScale, 0.95)                                                                \
  PROPERTY(NSTextAlignment, titleTextAlignment, TitleTextAlignment, NSTextAlignment::Center)                    \
  PROPERTY(NSTextAlignment, messageTextAlignment, MessageTextAlignment, NSTextAlignment::Center)                \
  PROPERTY(QFont, messageFont, MessageFont, systemFontOfSize(14))                                               \
  PROPERTY(QColor, buttonsTitleColor, ButtonsTitleColor, tintColor)                                             \
  PROPERTY(QColor, buttonsTitleColorHighlighted, ButtonsTitleColorHighlighted, QColor(Qt::white))               \
  PROPERTY(QColor, buttonsTitleColorDisabled, ButtonsTitleColorDisabled, RQAlertViewHelper::white(0.5))         \
  PROPERTY(NSTextAlignment, buttonsTextAlignment, ButtonsTextAlignment, NSTextAlignment::Center)                \
  PROPERTY(QFont, buttonsFont, ButtonsFont, systemFontOfSize(18))                                               \
  PROPERTY(QColor, buttonsBackgroundColor, ButtonsBackgroundColor, QColor(Qt::transparent))                     \
  PROPERTY(QColor, buttonsBackgroundColorHighlighted, ButtonsBackgroundColorHighlighted, tintColor)             \
  PROPERTY(QColor, buttonsBackgroundColorDisabled, ButtonsBackgroundColorDisabled, QColor())                    \
  PROPERTY(int, buttonsNumberOfLines, ButtonsNumberOfLines, 1)                                                  \
  PROPERTY(NSLineBreakMode, buttonsLineBreakMode, ButtonsLineBreakMode, NSLineBreakMode::ByTruncatingMiddle)    \
  PROPERTY(double, buttonsMinimumScaleFactor, ButtonsMinimumScaleFactor, 14.0 / 18.0)                           \
  PROPERTY(bool, buttonsAdjustsFontSizeToFitWidth, ButtonsAdjustsFontSizeToFitWidth, true)                      \
  PROPERTY(RQAlertViewButtonIconPosition, buttonsIconPosition, ButtonsIconPosition,                             \
           RQAlertViewButtonIconPosition::Left)                                                                 \
  PROPERTY(QColor, cancelButtonTitleColor, CancelButtonTitleColor, tintColor)                                   \
  PROPERTY(QColor, cancelButtonTitleColorHighlighted, CancelButtonTitleColorHighlighted, QColor(Qt::white))     \
  PROPERTY(QColor, cancelButtonTitleColorDisabled, CancelButtonTitleColorDisabled,                              \
           RQAlertViewHelper::white(0.5))                                                                       \
  PROPERTY(NSTextAlignment, cancelButtonTextAlignment, CancelButtonTextAlignment, NSTextAlignment::Center)      \
  PROPERTY(QFont, cancelButtonFont, CancelButtonFont, boldSystemFontOfSize(18))                                 \
  PROPERTY(QColor, cancelButtonBackgroundColor, CancelButtonBackgroundColor, QColor(Qt::transparent))           \
  PROPERTY(QColor, cancelButtonBackgroundColorHighlighted, CancelButtonBackgroundColorHighlighted, tintColor)   \
  PROPERTY(QColor, cancelButtonBackgroundColorDisabled, CancelButtonBackgroundColorDisabled, QColor())          \
  PROPERTY(int, cancelButtonNumberOfLines, CancelButtonNumberOfLines, 1)                                        \
  PROPERTY(NSLineBreakMode, cancelButtonLineBreakMode, CancelButtonLineBreakMode,                               \
           NSLineBreakMode::ByTruncatingMiddle)                                                                 \
  PROPERTY(double, cancelButtonMinimumScaleFactor, CancelButtonMinimumScaleFactor, 14.0 / 18.0)                 \
  PROPERTY(bool, cancelButtonAdjustsFontSizeToFitWidth, CancelButtonAdjustsFontSizeToFitWidth, true)            \
  PROPERTY(bool, cancelButtonEnabled, CancelButtonEnabled, true)                                                \
  PROPERTY(RQAlertViewButtonIconPosition, cancelButtonIconPosition, CancelButtonIconPosition,                   \
           RQAlertViewButtonIconPosition::Left)                                                                 \
  PROPERTY(QPixmap, cancelButtonIconImage, CancelButtonIconImage, QPixmap())                                    \
  PROPERTY(QColor, destructiveButtonTitleColor, DestructiveButtonTitleColor, QColor(Qt::red))                   \
  PROPERTY(QColor, destructiveButtonTitleColorHighlighted, DestructiveButtonTitleColorHighlighted,              \
           QColor(Qt::white))                                                                                   \
  PROPERTY(QColor, destructiveButtonTitleColorDisabled, DestructiveButtonTitleColorDisabled,                    \
           RQAlertViewHelper::white(0.5))                                                                       \
  PROPERTY(NSTextAlignment, destructiveButtonTextAlignment, DestructiveButtonTextAlignment,                     \
           NSTextAlignment::Center)                                                                             \
  PROPERTY(QFont, destructiveButtonFont, DestructiveButtonFont, systemFontOfSize(18))                           \
  PROPERTY(QColor, destructiveButtonBackgroundColor, DestructiveButtonBackgroundColor, QColor(Qt::transparent)) \
  PROPERTY(QColor, destructiveButtonBackgroundColorHighlighted, DestructiveButtonBackgroundColorHighlighted,    \
           QColor(Qt::red))                                                                                     \
  PROPERTY(QColor, destructiveButtonBackgroundColorDisabled, DestructiveButtonBackgroundColorDisabled, QColor())\
  PROPERTY(int, destructiveButtonNumberOfLines, DestructiveButtonNumberOfLines, 1)                              \
  PROPERTY(NSLineBreakMode, destructiveButtonLineBreakMode, DestructiveButtonLineBreakMode,                     \
           NSLineBreakMode::ByTruncatingMiddle)                                                                 \
  PROPERTY(double, destructiveButtonMinimumScaleFactor, DestructiveButtonMinimumScaleFactor, 14.0 / 18.0)       \
  PROPERTY(bool, destructiveButtonAdjustsFontSizeToFitWidth, DestructiveButtonAdjustsFontSizeToFitWidth, true)  \
  PROPERTY(bool, destructiveButtonEnabled, DestructiveButtonEnabled, true)                                      \
  PROPERTY(RQAlertViewButtonIconPosition, destructiveButtonIconPosition, DestructiveButtonIconPosition,         \
           RQAlertViewButtonIconPosition::Left)                                                                 \
  PROPERTY(QPixmap, destructiveButtonIconImage, DestructiveButtonIconImage, QPixmap())                          \
  PROPERTY(UIActivityIndicatorViewStyle, activityIndicatorViewStyle, ActivityIndicatorViewStyle,                \
           UIActivityIndicatorViewStyle::WhiteLarge)                                                            \
  PROPERTY(QColor, activityIndicatorViewColor, ActivityIndicatorViewColor, tintColor)                           \
  PROPERTY(QColor, progressViewProgressTintColor, ProgressViewProgressTintColor, tintColor)                     \
  PROPERTY(QColor, progressViewTrackTintColor, ProgressViewTrackTintColor, RQAlertViewHelper::white(0.8))       \
  PROPERTY(QPixmap, progressViewProgressImage, ProgressViewProgressImage, QPixmap())                            \
  PROPERTY(QPixmap, progressViewTrackImage, ProgressViewTrackImage, QPixmap())                                  \
  PROPERTY(QColor, progressLabelTextColor, ProgressLabelTextColor, QColor(Qt::black))                           \
  PROPERTY(NSTextAlignment, progressLabelTextAlignment, ProgressLabelTextAlignment, NSTextAlignment::Center)    \
  PROPERTY(QFont, progressLabelFont, ProgressLabelFont, systemFontOfSize(14))                                   \
  PROPERTY(int, progressLabelNumberOfLines, ProgressLabelNumberOfLines, 1)                                      \
  PROPERTY(NSLineBreakMode, progressLabelLineBreakMode, ProgressLabelLineBreakMode,                             \
           NSLineBreakMode::ByTruncatingTail)                                                                   \
  PROPERTY(QColor, textFieldsBackgroundColor, TextFieldsBackgroundColor, RQAlertViewHelper::white(0.97))        \
  PROPERTY(QColor, textFieldsTextColor, TextFieldsTextColor, QColor(Qt::black))                                 \
  PROPERTY(QFont, textFieldsFont, TextFieldsFont, systemFontOfSize(16))                                         \
  PROPERTY(NSTextAlignment, textFieldsTextAlignment, TextFieldsTextAlignment, NSTextAlignment::Left)            \
  PROPERTY(bool, textFieldsClearsOnBeginEditing, TextFieldsClearsOnBeginEditing, false)                         \
  PROPERTY(bool, textFieldsAdjustsFontSizeToFitWidth, TextFieldsAdjustsFontSizeToFitWidth, false)               \
  PROPERTY(double, textFieldsMinimumFontSize, TextFieldsMinimumFontSize, 12)                                    \
  PROPERTY(UITextFieldViewMode, textFieldsClearButtonMode, TextFieldsClearButtonMode, UITextFieldViewMode::Always)
// clang-format on

struct RQAlertViewAppearance {
#define RQ_MEMBER(Type, name, Name, value) Type name = value;
  RQ_ALERT_VIEW_APPEARANCE(RQ_MEMBER)
#undef RQ_MEMBER

  // Given to the buttons of the list as a whole when a dialog is made; see buttonsEnabledArray.
  bool buttonsEnabled = true;
  double width = RQAlertViewNotSet;

  // Absent until the application sets them; until then they depend on the dialog's style and type.
  std::optional<bool> cancelOnTouch;
  std::optional<double> buttonsHeight;
  std::optional<QColor> titleTextColor;
  std::optional<QFont> titleFont;
  std::optional<QColor> messageTextColor;
};
