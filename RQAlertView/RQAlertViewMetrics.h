// The measures of a dialog, in logical pixels unless a name says otherwise.
#pragma once

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
// Of a header and a list that do not fit together, the header keeps at least this share.
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
// Parts of 1: how much of the title's colour a button takes on below the pointer.
inline constexpr double hoverTint = 0.08;

}  // namespace RQAlertViewMetrics
