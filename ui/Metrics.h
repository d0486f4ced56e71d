// Sizes of the screens, in logical pixels.
#pragma once

namespace metrics {

inline constexpr int touchSize = 44;  // the smallest side of anything that is tapped
inline constexpr int iconSize = 24;
inline constexpr double titleTextSize = 18;
inline constexpr double buttonTextSize = 15;
inline constexpr double listTextSize = 15;
inline constexpr double fixedPitchTextSize = 13;
inline constexpr int buttonPadding = 16;
inline constexpr int bareButtonRadius = 10;
inline constexpr int focusRingWidth = 2;
inline constexpr int switchWidth = 52;
inline constexpr int switchHeight = 32;
inline constexpr int rowHeight = 48;
inline constexpr int rowPadding = 16;

}  // namespace metrics
