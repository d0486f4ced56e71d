// The appearance of a dialog: every property with the value it starts from.
#pragma once

#include "RQAlertView/RQAlertViewCell.h"
#include "RQAlertView/RQAlertViewHelper.h"
#include "RQAlertView/RQAlertViewReports.h"
#include "platform/ApplicationStyle.h"
#include "platform/UIActivityIndicatorView.h"
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

// One row for each property: type, name, setter, starting value. Lengths are logical
// pixels, durations seconds; an invalid colour or an empty picture means none. A value may name a property
// above it: the button colours are the tint as it is when the object is made. A blur is a picture of the
// application's window below the colour of the same place, so it is seen as far as coverColor or
// backgroundColor, which is opaque to start with, is see-through.
// clang-format off
#define RQ_ALERT_VIEW_APPEARANCE(PROPERTY)                                                                          \
  PROPERTY(std::shared_ptr<RQAlertViewCell>, heightCell, setHeightCell, std::make_shared<RQAlertViewCell>())        \
  PROPERTY(RQAlertViewWindowLevel, windowLevel, setWindowLevel, RQAlertViewWindowLevel::AboveStatusBar)             \
  PROPERTY(bool, dismissOnAction, setDismissOnAction, true)                                                         \
  PROPERTY(QColor, tintColor, setTintColor, RQAlertViewHelper::rgb(0, 0.5, 1))                                      \
  PROPERTY(QColor, coverColor, setCoverColor, RQAlertViewHelper::white(0, 0.35))                                    \
  PROPERTY(std::optional<UIBlurEffectStyle>, coverBlurEffect, setCoverBlurEffect, std::nullopt)                     \
  PROPERTY(double, coverAlpha, setCoverAlpha, 1.0)                                                                  \
  PROPERTY(QColor, backgroundColor, setBackgroundColor, QColor(Qt::white))                                          \
  PROPERTY(std::optional<UIBlurEffectStyle>, backgroundBlurEffect, setBackgroundBlurEffect, std::nullopt)           \
  PROPERTY(double, textFieldsHeight, setTextFieldsHeight, 44)                                                       \
  PROPERTY(double, offsetVertical, setOffsetVertical, 8)                                                            \
  PROPERTY(double, cancelButtonOffsetY, setCancelButtonOffsetY, 8)                                                  \
  PROPERTY(double, heightMax, setHeightMax, RQAlertViewNotSet)                                                      \
  PROPERTY(QColor, separatorsColor, setSeparatorsColor, RQAlertViewHelper::white(0.85))                             \
  PROPERTY(UIScrollViewIndicatorStyle, indicatorStyle, setIndicatorStyle, UIScrollViewIndicatorStyle::Black)        \
  PROPERTY(bool, showsVerticalScrollIndicator, setShowsVerticalScrollIndicator, false)                              \
  PROPERTY(bool, padShowsActionSheetFromBottom, setPadShowsActionSheetFromBottom, false)                            \
  PROPERTY(bool, oneRowOneButton, setOneRowOneButton, false)                                                        \
  PROPERTY(bool, shouldDismissAnimated, setShouldDismissAnimated, true)                                             \
  PROPERTY(double, layerCornerRadius, setLayerCornerRadius, RQAlertViewHelper::systemVersion() < 9.0 ? 6 : 12)      \
  PROPERTY(QColor, layerBorderColor, setLayerBorderColor, QColor())                                                 \
  PROPERTY(double, layerBorderWidth, setLayerBorderWidth, 0)                                                        \
  PROPERTY(QColor, layerShadowColor, setLayerShadowColor, QColor())                                                 \
  PROPERTY(double, layerShadowRadius, setLayerShadowRadius, 0)                                                      \
  PROPERTY(QPointF, layerShadowOffset, setLayerShadowOffset, QPointF())                                             \
  PROPERTY(double, animationDuration, setAnimationDuration, 0.5)                                                    \
  PROPERTY(double, initialScale, setInitialScale, 1.2)                                                              \
  PROPERTY(double, finalScale, setFinalScale, 0.95)                                                                 \
  PROPERTY(NSTextAlignment, titleTextAlignment, setTitleTextAlignment, NSTextAlignment::Center)                     \
  PROPERTY(NSTextAlignment, messageTextAlignment, setMessageTextAlignment, NSTextAlignment::Center)                 \
  PROPERTY(QFont, messageFont, setMessageFont, systemFontOfSize(14))                                                \
  PROPERTY(QColor, buttonsTitleColor, setButtonsTitleColor, tintColor)                                              \
  PROPERTY(QColor, buttonsTitleColorHighlighted, setButtonsTitleColorHighlighted, QColor(Qt::white))                \
  PROPERTY(QColor, buttonsTitleColorDisabled, setButtonsTitleColorDisabled, RQAlertViewHelper::white(0.5))          \
  PROPERTY(NSTextAlignment, buttonsTextAlignment, setButtonsTextAlignment, NSTextAlignment::Center)                 \
  PROPERTY(QFont, buttonsFont, setButtonsFont, systemFontOfSize(18))                                                \
  PROPERTY(QColor, buttonsBackgroundColor, setButtonsBackgroundColor, QColor(Qt::transparent))                      \
  PROPERTY(QColor, buttonsBackgroundColorHighlighted, setButtonsBackgroundColorHighlighted, tintColor)              \
  PROPERTY(QColor, buttonsBackgroundColorDisabled, setButtonsBackgroundColorDisabled, QColor())                     \
  PROPERTY(int, buttonsNumberOfLines, setButtonsNumberOfLines, 1)                                                   \
  PROPERTY(NSLineBreakMode, buttonsLineBreakMode, setButtonsLineBreakMode, NSLineBreakMode::ByTruncatingMiddle)     \
  PROPERTY(double, buttonsMinimumScaleFactor, setButtonsMinimumScaleFactor, 14.0 / 18.0)                            \
  PROPERTY(bool, buttonsAdjustsFontSizeToFitWidth, setButtonsAdjustsFontSizeToFitWidth, true)                       \
  PROPERTY(RQAlertViewButtonIconPosition, buttonsIconPosition, setButtonsIconPosition,                              \
           RQAlertViewButtonIconPosition::Left)                                                                     \
  PROPERTY(QColor, cancelButtonTitleColor, setCancelButtonTitleColor, tintColor)                                    \
  PROPERTY(QColor, cancelButtonTitleColorHighlighted, setCancelButtonTitleColorHighlighted, QColor(Qt::white))      \
  PROPERTY(QColor, cancelButtonTitleColorDisabled, setCancelButtonTitleColorDisabled,                               \
           RQAlertViewHelper::white(0.5))                                                                           \
  PROPERTY(NSTextAlignment, cancelButtonTextAlignment, setCancelButtonTextAlignment, NSTextAlignment::Center)       \
  PROPERTY(QFont, cancelButtonFont, setCancelButtonFont, boldSystemFontOfSize(18))                                  \
  PROPERTY(QColor, cancelButtonBackgroundColor, setCancelButtonBackgroundColor, QColor(Qt::transparent))            \
  PROPERTY(QColor, cancelButtonBackgroundColorHighlighted, setCancelButtonBackgroundColorHighlighted, tintColor)    \
  PROPERTY(QColor, cancelButtonBackgroundColorDisabled, setCancelButtonBackgroundColorDisabled, QColor())           \
  PROPERTY(int, cancelButtonNumberOfLines, setCancelButtonNumberOfLines, 1)                                         \
  PROPERTY(NSLineBreakMode, cancelButtonLineBreakMode, setCancelButtonLineBreakMode,                                \
           NSLineBreakMode::ByTruncatingMiddle)                                                                     \
  PROPERTY(double, cancelButtonMinimumScaleFactor, setCancelButtonMinimumScaleFactor, 14.0 / 18.0)                  \
  PROPERTY(bool, cancelButtonAdjustsFontSizeToFitWidth, setCancelButtonAdjustsFontSizeToFitWidth, true)             \
  PROPERTY(bool, cancelButtonEnabled, setCancelButtonEnabled, true)                                                 \
  PROPERTY(RQAlertViewButtonIconPosition, cancelButtonIconPosition, setCancelButtonIconPosition,                    \
           RQAlertViewButtonIconPosition::Left)                                                                     \
  PROPERTY(QPixmap, cancelButtonIconImage, setCancelButtonIconImage, QPixmap())                                     \
  PROPERTY(QColor, destructiveButtonTitleColor, setDestructiveButtonTitleColor, QColor(Qt::red))                    \
  PROPERTY(QColor, destructiveButtonTitleColorHighlighted, setDestructiveButtonTitleColorHighlighted,               \
           QColor(Qt::white))                                                                                       \
  PROPERTY(QColor, destructiveButtonTitleColorDisabled, setDestructiveButtonTitleColorDisabled,                     \
           RQAlertViewHelper::white(0.5))                                                                           \
  PROPERTY(NSTextAlignment, destructiveButtonTextAlignment, setDestructiveButtonTextAlignment,                      \
           NSTextAlignment::Center)                                                                                 \
  PROPERTY(QFont, destructiveButtonFont, setDestructiveButtonFont, systemFontOfSize(18))                            \
  PROPERTY(QColor, destructiveButtonBackgroundColor, setDestructiveButtonBackgroundColor, QColor(Qt::transparent))  \
  PROPERTY(QColor, destructiveButtonBackgroundColorHighlighted, setDestructiveButtonBackgroundColorHighlighted,     \
           QColor(Qt::red))                                                                                         \
  PROPERTY(QColor, destructiveButtonBackgroundColorDisabled, setDestructiveButtonBackgroundColorDisabled, QColor()) \
  PROPERTY(int, destructiveButtonNumberOfLines, setDestructiveButtonNumberOfLines, 1)                               \
  PROPERTY(NSLineBreakMode, destructiveButtonLineBreakMode, setDestructiveButtonLineBreakMode,                      \
           NSLineBreakMode::ByTruncatingMiddle)                                                                     \
  PROPERTY(double, destructiveButtonMinimumScaleFactor, setDestructiveButtonMinimumScaleFactor, 14.0 / 18.0)        \
  PROPERTY(bool, destructiveButtonAdjustsFontSizeToFitWidth, setDestructiveButtonAdjustsFontSizeToFitWidth, true)   \
  PROPERTY(bool, destructiveButtonEnabled, setDestructiveButtonEnabled, true)                                       \
  PROPERTY(RQAlertViewButtonIconPosition, destructiveButtonIconPosition, setDestructiveButtonIconPosition,          \
           RQAlertViewButtonIconPosition::Left)                                                                     \
  PROPERTY(QPixmap, destructiveButtonIconImage, setDestructiveButtonIconImage, QPixmap())                           \
  PROPERTY(UIActivityIndicatorViewStyle, activityIndicatorViewStyle, setActivityIndicatorViewStyle,                 \
           UIActivityIndicatorViewStyle::WhiteLarge)                                                                \
  PROPERTY(QColor, activityIndicatorViewColor, setActivityIndicatorViewColor, tintColor)                            \
  PROPERTY(QColor, progressViewProgressTintColor, setProgressViewProgressTintColor, tintColor)                      \
  PROPERTY(QColor, progressViewTrackTintColor, setProgressViewTrackTintColor, RQAlertViewHelper::white(0.8))        \
  PROPERTY(QPixmap, progressViewProgressImage, setProgressViewProgressImage, QPixmap())                             \
  PROPERTY(QPixmap, progressViewTrackImage, setProgressViewTrackImage, QPixmap())                                   \
  PROPERTY(QColor, progressLabelTextColor, setProgressLabelTextColor, QColor(Qt::black))                            \
  PROPERTY(NSTextAlignment, progressLabelTextAlignment, setProgressLabelTextAlignment, NSTextAlignment::Center)     \
  PROPERTY(QFont, progressLabelFont, setProgressLabelFont, systemFontOfSize(14))                                    \
  PROPERTY(int, progressLabelNumberOfLines, setProgressLabelNumberOfLines, 1)                                       \
  PROPERTY(NSLineBreakMode, progressLabelLineBreakMode, setProgressLabelLineBreakMode,                              \
           NSLineBreakMode::ByTruncatingTail)                                                                       \
  PROPERTY(QColor, textFieldsBackgroundColor, setTextFieldsBackgroundColor, RQAlertViewHelper::white(0.97))         \
  PROPERTY(QColor, textFieldsTextColor, setTextFieldsTextColor, QColor(Qt::black))                                  \
  PROPERTY(QFont, textFieldsFont, setTextFieldsFont, systemFontOfSize(16))                                          \
  PROPERTY(NSTextAlignment, textFieldsTextAlignment, setTextFieldsTextAlignment, NSTextAlignment::Left)             \
  PROPERTY(bool, textFieldsClearsOnBeginEditing, setTextFieldsClearsOnBeginEditing, false)                          \
  PROPERTY(bool, textFieldsAdjustsFontSizeToFitWidth, setTextFieldsAdjustsFontSizeToFitWidth, false)                \
  PROPERTY(double, textFieldsMinimumFontSize, setTextFieldsMinimumFontSize, 12)                                     \
  PROPERTY(UITextFieldViewMode, textFieldsClearButtonMode, setTextFieldsClearButtonMode, UITextFieldViewMode::Always)
// clang-format on

struct RQAlertViewAppearance {
#define RQ_MEMBER(Type, name, setter, value) Type name = value;
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
