#include "RQAlertView/RQAlertViewShadowView.h"

#include <algorithm>
#include <cmath>

#include <QPainter>

RQAlertViewShadowView::RQAlertViewShadowView(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void RQAlertViewShadowView::setLook(const Look& look) {
  if (look == look_) return;
  look_ = look;
  setCardGeometry(card_);
  update();
}

void RQAlertViewShadowView::setCardGeometry(const QRect& card) {
  card_ = card;
  const int margin = shadowMargin(look_);
  setGeometry(card.adjusted(-margin, -margin, margin, margin));
}

void RQAlertViewShadowView::setSeparators(const QList<QRect>& separators) {
  separators_ = separators;
  update();
}

void RQAlertViewShadowView::setBackdrop(const QPixmap& backdrop) {
  if (backdrop.isNull() && backdrop_.isNull()) return;
  backdrop_ = backdrop;
  update();
}

QPainterPath RQAlertViewShadowView::outline() const {
  QPainterPath path;
  path.addRoundedRect(card_, look_.cornerRadius, look_.cornerRadius);
  return path;
}

int RQAlertViewShadowView::shadowMargin(const Look& look) {
  if (!look.shadowColor.isValid()) return 0;
  const double offset = std::max(std::abs(look.shadowOffset.x()), std::abs(look.shadowOffset.y()));
  return static_cast<int>(std::ceil(std::max(look.shadowRadius, 0.0) * 2 + offset));
}

void RQAlertViewShadowView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(-pos());
  const QRectF card = card_;
  paintShadow(painter, card);

  painter.setPen(Qt::NoPen);
  if (!backdrop_.isNull()) {
    QBrush brush(backdrop_);
    const double ratio = backdrop_.devicePixelRatioF();
    brush.setTransform(QTransform::fromScale(1 / ratio, 1 / ratio) *
                       QTransform::fromTranslate(card.x(), card.y()));
    painter.setBrush(brush);
    painter.drawRoundedRect(card, look_.cornerRadius, look_.cornerRadius);
  }
  painter.setBrush(look_.backgroundColor);
  painter.drawRoundedRect(card, look_.cornerRadius, look_.cornerRadius);

  const double hairline = 1.0 / devicePixelRatioF();
  for (const QRect& separator : separators_) {
    QRectF line = separator;
    line.width() > line.height() ? line.setHeight(hairline) : line.setWidth(hairline);
    painter.fillRect(line, look_.separatorsColor);
  }
}

void RQAlertViewShadowView::paintShadow(QPainter& painter, const QRectF& card) const {
  if (shadowMargin(look_) == 0) return;
  painter.setPen(Qt::NoPen);
  if (look_.shadowRadius <= 0) {
    painter.setBrush(look_.shadowColor);
    painter.drawRoundedRect(card.translated(look_.shadowOffset), look_.cornerRadius, look_.cornerRadius);
    return;
  }
  // Rings that overlap from the outside in add up to the soft edge of a blur.
  const int rings = static_cast<int>(std::ceil(look_.shadowRadius * 2));
  QColor ring = look_.shadowColor;
  ring.setAlphaF(static_cast<float>(1 - std::pow(1 - look_.shadowColor.alphaF() * 0.9, 1.0 / rings)));
  painter.setBrush(ring);
  for (int step = 0; step < rings; ++step) {
    const double grow = look_.shadowRadius - step;
    const double radius = std::max(0.0, look_.cornerRadius + grow);
    painter.drawRoundedRect(card.translated(look_.shadowOffset).adjusted(-grow, -grow, grow, grow), radius,
                            radius);
  }
}

RQAlertViewBorderView::RQAlertViewBorderView(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  hide();
}

void RQAlertViewBorderView::frame(const RQAlertViewShadowView& card) {
  look_ = card.look();
  setGeometry(card.cardGeometry());
  setVisible(!card.isHidden() && look_.borderColor.isValid() && look_.borderWidth > 0);
  raise();
  update();
}

void RQAlertViewBorderView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(look_.borderColor, look_.borderWidth));
  const double inset = look_.borderWidth / 2;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), look_.cornerRadius - inset,
                          look_.cornerRadius - inset);
}
