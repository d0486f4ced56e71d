#include "platform/ApplicationStyle.h"

#include <QApplication>
#include <QFontDatabase>
#include <QImage>
#include <QPainter>
#include <QStyleOptionSlider>

namespace {

// Logical pixels.
constexpr int scrollBarRoom = 12;
constexpr int thumbWidth = 6;
constexpr int leastThumb = 32;

QFont resized(QFont font, double size) {
  // Points, not pixels: a desktop's larger text is a larger number of dots to the inch.
  font.setPointSizeF(size * 72.0 / 96.0);
  return font;
}

}  // namespace

QFont systemFontOfSize(double size) {
  return resized(QApplication::font(), size);
}

QFont boldSystemFontOfSize(double size) {
  QFont font = systemFontOfSize(size);
  font.setBold(true);
  return font;
}

QFont fixedPitchFontOfSize(double size) {
  return resized(QFontDatabase::systemFont(QFontDatabase::FixedFont), size);
}

void loadFonts() {
  QImage paper(1, 1, QImage::Format_ARGB32_Premultiplied);
  QPainter painter(&paper);
  for (const QFont& font : {systemFontOfSize(14), boldSystemFontOfSize(18)}) {
    painter.setFont(font);
    painter.drawText(0, 0, QStringLiteral("Tweak تويك"));
  }
}

ApplicationStyle::ApplicationStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

QColor ApplicationStyle::scrollBarThumb() {
  return grey(145);
}

void ApplicationStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                          QPainter* painter, const QWidget* widget) const {
  const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control != CC_ScrollBar || !bar) {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    return;
  }
  if (bar->maximum <= bar->minimum) return;
  QRectF thumb = subControlRect(control, option, SC_ScrollBarSlider, widget);
  const bool lies = bar->orientation == Qt::Horizontal;
  const double margin = ((lies ? thumb.height() : thumb.width()) - thumbWidth) / 2;
  thumb = lies ? thumb.adjusted(0, margin, 0, -margin) : thumb.adjusted(margin, 0, -margin, 0);
  const bool isTouched = (bar->activeSubControls & SC_ScrollBarSlider) != 0 &&
                         (bar->state & (State_MouseOver | State_Sunken)) != 0;
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(Qt::NoPen);
  painter->setBrush(isTouched ? scrollBarThumb().lighter(130) : scrollBarThumb());
  painter->drawRoundedRect(thumb, thumbWidth / 2.0, thumbWidth / 2.0);
  painter->restore();
}

QRect ApplicationStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                       SubControl part, const QWidget* widget) const {
  const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control != CC_ScrollBar || !bar) return QProxyStyle::subControlRect(control, option, part, widget);
  if (part == SC_ScrollBarSubLine || part == SC_ScrollBarAddLine) return {};
  // The base has a button at each end: of a bar that is longer by both, all between them is this bar.
  const bool lies = bar->orientation == Qt::Horizontal;
  const QPoint button = lies ? QPoint(scrollBarRoom, 0) : QPoint(0, scrollBarRoom);
  QStyleOptionSlider longer = *bar;
  longer.rect.setBottomRight(bar->rect.bottomRight() + 2 * button);
  return QProxyStyle::subControlRect(control, &longer, part, widget).translated(-button);
}

int ApplicationStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const {
  if (metric == PM_ScrollBarExtent) return scrollBarRoom;
  if (metric == PM_ScrollBarSliderMin) return leastThumb;
  return QProxyStyle::pixelMetric(metric, option, widget);
}
