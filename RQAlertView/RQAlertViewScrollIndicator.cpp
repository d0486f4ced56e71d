#include "RQAlertView/RQAlertViewScrollIndicator.h"

#include "RQAlertView/RQAlertViewMetrics.h"

#include <algorithm>

#include <QLinearGradient>
#include <QPainter>

using namespace RQAlertViewMetrics;

void paintGoesOn(QPainter& painter, const QRect& area, const QColor& background) {
  const int fade = std::min(scrollFadeHeight, area.height());
  const QRect edge(area.left(), area.bottom() + 1 - fade, area.width(), fade);
  QLinearGradient gradient(edge.topLeft(), edge.bottomLeft());
  QColor clear = background;
  clear.setAlpha(0);
  gradient.setColorAt(0, clear);
  gradient.setColorAt(1, background);
  painter.fillRect(edge, gradient);
}

RQAlertViewScrollIndicator::RQAlertViewScrollIndicator(QWidget* parent) : QScrollBar(Qt::Vertical, parent) {}

void RQAlertViewScrollIndicator::setStyle(UIScrollViewIndicatorStyle style) {
  style_ = style;
  update();
}

QSize RQAlertViewScrollIndicator::sizeHint() const {
  return {scrollIndicatorRoom, scrollIndicatorRoom};
}

void RQAlertViewScrollIndicator::paintEvent(QPaintEvent*) {
  const double whole = maximum() - minimum() + pageStep();
  if (whole <= 0) return;
  const double track = height() - 2 * scrollIndicatorInset;
  const double length = std::max<double>(track * pageStep() / whole, scrollIndicatorLeastLength);
  const double range = std::max(maximum() - minimum(), 1);
  const double top = scrollIndicatorInset + (track - length) * (value() - minimum()) / range;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(style_ == UIScrollViewIndicatorStyle::White ? QColor(255, 255, 255, 128)
                                                               : QColor(0, 0, 0, 128));
  const QRectF bar((width() - scrollIndicatorWidth) / 2.0, top, scrollIndicatorWidth, length);
  painter.drawRoundedRect(bar, scrollIndicatorWidth / 2.0, scrollIndicatorWidth / 2.0);
}
