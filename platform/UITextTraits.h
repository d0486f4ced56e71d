// How texts and input fields are set, drawn and behave, in the platform's values.
#pragma once

enum class NSTextAlignment { Left = 0, Center = 1, Right = 2, Justified = 3, Natural = 4 };

enum class NSLineBreakMode {
  ByWordWrapping = 0,
  ByCharWrapping = 1,
  ByClipping = 2,
  ByTruncatingHead = 3,
  ByTruncatingTail = 4,
  ByTruncatingMiddle = 5
};

enum class UITextFieldViewMode { Never = 0, WhileEditing = 1, UnlessEditing = 2, Always = 3 };

enum class UIKeyboardAppearance { Default = 0, Dark = 1, Light = 2 };

enum class UIScrollViewIndicatorStyle { Default = 0, Black = 1, White = 2 };

enum class UIBlurEffectStyle { ExtraLight = 0, Light = 1, Dark = 2 };

// The visible form of a UTF-16 unit by which a name could break its line, steer the reading direction, or
// look like another name: a control picture, else U+FFFD. Every other unit as it is.
constexpr char16_t visibleForm(char16_t unit) {
  if (unit < 0x20) return static_cast<char16_t>(0x2400 + unit);
  if (unit == 0x7F) return 0x2421;
  const bool control = unit >= 0x80 && unit <= 0x9F;
  const bool separator = unit == 0x2028 || unit == 0x2029;
  const bool mark = unit == 0x061C || unit == 0x200E || unit == 0x200F ||
                    (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
  return control || separator || mark ? 0xFFFD : unit;
}
