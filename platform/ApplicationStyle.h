// How the controls look whose drawing is left to the style.
#pragma once

#include <QColor>
#include <QProxyStyle>

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
