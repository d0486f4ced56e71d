// All that a dialog shows, as plain values. The pieces that draw it read them and know nothing of the dialog.
#pragma once

#include "RQAlertView/RQAlertViewButtonProperties.h"
#include "RQAlertView/RQAlertViewCell.h"
#include "platform/UIActivityIndicatorView.h"
#include "platform/UIScreen.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <QPointF>
#include <QPointer>
#include <QStringList>
#include <QWidget>

enum class RQAlertViewStyle { Alert = 0, ActionSheet = 1 };

// What is between the message and the buttons. A custom view is of the default type.
enum class RQAlertViewType { Default = 0, ActivityIndicator = 1, ProgressView = 2, TextFields = 3 };

enum class RQAlertViewWindowLevel { AboveStatusBar = 0, BelowStatusBar = 1 };

// A length that is not set.
inline constexpr double RQAlertViewNotSet = static_cast<double>(INT64_MAX);

// Every property of a dialog's look with its starting value. Lengths are logical pixels, durations seconds;
// an invalid colour or a null picture means none. A blur is a picture of the application's window below the
// colour of the same place: it shows as far as coverColor or backgroundColor, which starts opaque, is
// transparent.
struct RQAlertViewAppearance {
  std::shared_ptr<RQAlertViewCell> heightCell = std::make_shared<RQAlertViewCell>();
  RQAlertViewWindowLevel windowLevel = RQAlertViewWindowLevel::AboveStatusBar;
  bool dismissOnAction = true;
  QColor tintColor = QColor::fromRgbF(0, 0.5F, 1);
  QColor coverColor = QColor::fromRgbF(0, 0, 0, 0.35F);
  std::optional<UIBlurEffectStyle> coverBlurEffect;
  double coverAlpha = 1;
  QColor backgroundColor = Qt::white;
  std::optional<UIBlurEffectStyle> backgroundBlurEffect;
  double textFieldsHeight = 44;
  double offsetVertical = 8;
  double cancelButtonOffsetY = 8;
  double heightMax = RQAlertViewNotSet;
  double width = RQAlertViewNotSet;
  QColor separatorsColor = grey(255 * 0.85);
  UIScrollViewIndicatorStyle indicatorStyle = UIScrollViewIndicatorStyle::Black;
  bool showsVerticalScrollIndicator = false;
  bool padShowsActionSheetFromBottom = false;
  bool oneRowOneButton = false;
  bool shouldDismissAnimated = true;
  double layerCornerRadius = UIDevice::currentDevice().systemVersion() < 9 ? 6 : 12;
  QColor layerBorderColor;
  double layerBorderWidth = 0;
  QColor layerShadowColor;
  double layerShadowRadius = 0;
  QPointF layerShadowOffset;
  double animationDuration = 0.5;
  double initialScale = 1.2;
  double finalScale = 0.95;
  NSTextAlignment titleTextAlignment = NSTextAlignment::Center;
  NSTextAlignment messageTextAlignment = NSTextAlignment::Center;
  QFont messageFont = systemFontOfSize(14);

  // The button colours are the tint as it is now; a later change of the tint does not reach them.
  RQAlertViewButtonLook buttons{.titleColor = tintColor, .font = systemFontOfSize(18)};
  RQAlertViewButtonLook cancelButton{.titleColor = tintColor, .font = boldSystemFontOfSize(18)};
  RQAlertViewButtonLook destructiveButton{.titleColor = Qt::red, .font = systemFontOfSize(18)};

  UIActivityIndicatorViewStyle activityIndicatorViewStyle = UIActivityIndicatorViewStyle::WhiteLarge;
  QColor activityIndicatorViewColor = tintColor;
  QColor progressViewProgressTintColor = tintColor;
  QColor progressViewTrackTintColor = grey(255 * 0.8);
  QPixmap progressViewProgressImage, progressViewTrackImage;
  QColor progressLabelTextColor = Qt::black;
  NSTextAlignment progressLabelTextAlignment = NSTextAlignment::Center;
  QFont progressLabelFont = systemFontOfSize(14);
  int progressLabelNumberOfLines = 1;
  NSLineBreakMode progressLabelLineBreakMode = NSLineBreakMode::ByTruncatingTail;
  QColor textFieldsBackgroundColor = grey(255 * 0.97);
  QColor textFieldsTextColor = Qt::black;
  QFont textFieldsFont = systemFontOfSize(16);
  NSTextAlignment textFieldsTextAlignment = NSTextAlignment::Left;
  bool textFieldsClearsOnBeginEditing = false;
  bool textFieldsAdjustsFontSizeToFitWidth = false;
  double textFieldsMinimumFontSize = 12;
  UITextFieldViewMode textFieldsClearButtonMode = UITextFieldViewMode::Always;

  // Absent in the shared object until the application sets them; a dialog chooses by its style and type then.
  std::optional<bool> cancelOnTouch;
  std::optional<double> buttonsHeight;
  std::optional<QColor> titleTextColor;
  std::optional<QFont> titleFont;
  std::optional<QColor> messageTextColor;
};

enum class RQAlertViewButtonKind { Action, Cancel, Destructive };

// A button, wherever it is shown.
struct RQAlertViewRow {
  RQAlertViewButtonKind kind = RQAlertViewButtonKind::Action;
  std::size_t index = 0;  // among the button titles; 0 for the other kinds
  QString title;

  friend bool operator==(const RQAlertViewRow&, const RQAlertViewRow&) = default;
};

// Called when the user presses a button.
using RQAlertViewPress = std::function<void(const RQAlertViewRow& row)>;

// Null texts are absent.
struct RQAlertViewModel {
  RQAlertViewType type = RQAlertViewType::Default;
  QString title{};
  QString message{};
  RQAlertViewStyle style = RQAlertViewStyle::Alert;
  QStringList buttonTitles{};
  QString cancelButtonTitle{};
  QString destructiveButtonTitle{};
  QPointer<QWidget> innerView{};
  double progress = 0;  // from 0 to 1
  QString progressLabelText{};
  std::size_t numberOfTextFields = 0;

  RQAlertViewAppearance appearance{};
  std::vector<bool> buttonsEnabled{};  // one for each of the button titles
  std::map<std::size_t, RQAlertViewButtonProperties> buttonProperties{};

  // The buttons in the order of the list: the destructive one first, the cancel button last unless it is
  // separate.
  QList<RQAlertViewRow> rows() const;
  RQAlertViewRow cancelRow() const { return {RQAlertViewButtonKind::Cancel, 0, cancelButtonTitle}; }
  RQAlertViewButtonLook lookOf(const RQAlertViewRow& row) const;
  bool isEnabled(const RQAlertViewRow& row) const;
  // Whether each row of the list is as high as the others.
  bool hasUniformRows() const;
  // Of the box in the application's window as it is now, whatever was set.
  double width() const;
};
