// How texts and input fields are set and behave, in the platform's values.
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
