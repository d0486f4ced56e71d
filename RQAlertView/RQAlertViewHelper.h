// Questions that several pieces of a dialog ask, and their measures in logical pixels.
#pragma once

class UIWindow;
struct RQAlertViewModel;

class RQAlertViewHelper {
 public:
  static double systemVersion();
  // The application's own window, or null.
  static UIWindow* appWindow();
  static bool isPad();
  // An action sheet in the middle of a pad's screen rather than at its bottom.
  static bool isPadAndNotForce(const RQAlertViewModel& dialog);
  // An action sheet at the bottom of the screen.
  static bool comesFromBottom(const RQAlertViewModel& dialog);
  // Whether the cancel button is below the list instead of being its last row.
  static bool isCancelButtonSeparate(const RQAlertViewModel& dialog);
};

namespace RQAlertViewMetrics {

// The box.
inline constexpr double alertWidth = 280;
inline constexpr double padActionSheetWidth = 388;
inline constexpr double actionSheetSideMargins = 16;  // both sides together

// Title, message and content.
inline constexpr int headerPadding = 16;
inline constexpr int alertHeaderPaddingVertical = 20;
inline constexpr int actionSheetHeaderPaddingVertical = 14;
inline constexpr int titleMessageGap = 5;
inline constexpr int contentGap = 14;
inline constexpr int textFieldsGap = 8;
inline constexpr int progressLabelGap = 10;
inline constexpr int progressBarHeight = 4;
// The least share of the header where header and list do not fit together.
inline constexpr double headerShare = 0.4;
inline constexpr int scrollFadeHeight = 18;
inline constexpr int scrollIndicatorRoom = 7;
inline constexpr int scrollIndicatorWidth = 3;
inline constexpr int scrollIndicatorInset = 3;
inline constexpr int scrollIndicatorLeastLength = 24;

// Text fields.
inline constexpr int textFieldCornerRadius = 8;
inline constexpr int textFieldPadding = 8;

// Buttons.
inline constexpr double alertButtonHeight = 44;
inline constexpr double actionSheetButtonHeight = 56;
inline constexpr double actionSheetButtonHeightBefore9 = 44;
inline constexpr int buttonPadding = 14;
inline constexpr int buttonPaddingSideBySide = 8;
inline constexpr int buttonPaddingVertical = 9;
inline constexpr int iconGap = 8;
inline constexpr int mostButtonsSideBySide = 3;
inline constexpr int focusRingWidth = 2;
inline constexpr int focusRingInset = 3;
inline constexpr int focusRingRadius = 8;
// From 0 to 1: how much of the title's colour a button takes on below the pointer.
inline constexpr double hoverTint = 0.08;

}  // namespace RQAlertViewMetrics
