// Colours, fonts, how texts are set, and the look of the controls whose drawing is left to the style.
#pragma once

#include <QColor>
#include <QFont>
#include <QProxyStyle>

// The opaque grey whose red, green and blue are `level255` of 255.
inline QColor grey(double level255) {
  const auto level = static_cast<float>(level255 / 255.0);
  return QColor::fromRgbF(level, level, level);
}

// The application's font with `size` logical pixels at the usual 96 dots an inch; it grows with the desktop's
// text scale. Needs the application object.
QFont systemFontOfSize(double size);
QFont boldSystemFontOfSize(double size);
// The desktop's font for code, in the same way.
QFont fixedPitchFontOfSize(double size);

// Finds and opens the fonts of the texts to come, which takes so long the first time that the motion of a
// dialog would stop for it.
void loadFonts();

// In the values of the platform.
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

// Fusion, with scroll bars that are only a thumb: nothing at their ends, and no ground of their own.
class ApplicationStyle : public QProxyStyle {
  Q_OBJECT

 public:
  ApplicationStyle();

  static QColor scrollBarThumb();

  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
};
