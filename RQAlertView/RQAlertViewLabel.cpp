#include "RQAlertView/RQAlertViewLabel.h"

#include <cmath>

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>

RQAlertViewLabel::RQAlertViewLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
}

void RQAlertViewLabel::setStyle(const RQAlertViewTextStyle& style, const QColor& color) {
  if (!(style == style_)) layout_.reset();
  style_ = style;
  color_ = color;
  update();
}

int RQAlertViewLabel::heightForWidth(int width) const {
  return static_cast<int>(std::ceil(layoutFor(width).height()));
}

void RQAlertViewLabel::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setPen(color_);
  layoutFor(width()).paint(painter, {0, 0}, event->rect());
}

void RQAlertViewLabel::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LayoutDirectionChange || event->type() == QEvent::FontChange) layout_.reset();
  QLabel::changeEvent(event);
}

const RQAlertViewTextLayout& RQAlertViewLabel::layoutFor(int width) const {
  if (!layout_ || laidOutWidth_ != width || laidOutText_ != text()) {
    layout_.emplace(text(), style_, width);
    laidOutText_ = text();
    laidOutWidth_ = width;
  }
  return *layout_;
}
