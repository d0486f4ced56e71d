#include "RQAlertView/RQAlertViewShadowView.h"

#include "RQAlertView/RQAlertViewHelper.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QAbstractScrollArea>
#include <QLinearGradient>
#include <QPainter>

using namespace RQAlertViewMetrics;

RQAlertViewOverlay::RQAlertViewOverlay(Paint paint, QWidget* parent)
    : QWidget(parent), paint_(std::move(paint)) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void RQAlertViewOverlay::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paint_(painter, rect());
}

RQAlertViewShadowView::RQAlertViewShadowView(std::shared_ptr<const RQAlertViewModel> dialog, QWidget* parent)
    : QWidget(parent),
      dialog_(std::move(dialog)),
      border_(new RQAlertViewOverlay(std::bind_front(&RQAlertViewShadowView::paintBorder, this), parent)) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void RQAlertViewShadowView::setCardGeometry(const QRect& card) {
  card_ = card;
  const RQAlertViewAppearance& look = dialog_->appearance;
  const int margin = shadowMargin(look);
  setGeometry(card.adjusted(-margin, -margin, margin, margin));
  setVisible(!card.isEmpty());
  update();
  border_->setGeometry(card);
  border_->setVisible(!card.isEmpty() && look.layerBorderColor.isValid() && look.layerBorderWidth > 0);
  border_->raise();
  border_->update();
}

void RQAlertViewShadowView::setSeparators(const QList<QRect>& separators) {
  separators_ = separators;
  update();
}

void RQAlertViewShadowView::setBackdrop(const QPixmap& backdrop) {
  backdrop_ = backdrop;
  update();
}

QPainterPath RQAlertViewShadowView::outline() const {
  QPainterPath path;
  path.addRoundedRect(card_, dialog_->appearance.layerCornerRadius, dialog_->appearance.layerCornerRadius);
  return path;
}

int RQAlertViewShadowView::shadowMargin(const RQAlertViewAppearance& look) {
  if (!look.layerShadowColor.isValid()) return 0;
  const double offset = std::max(std::abs(look.layerShadowOffset.x()), std::abs(look.layerShadowOffset.y()));
  return static_cast<int>(std::ceil(std::max(look.layerShadowRadius, 0.0) * 2 + offset));
}

void RQAlertViewShadowView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(-pos());
  painter.setPen(Qt::NoPen);
  paintShadow(painter);

  const double radius = dialog_->appearance.layerCornerRadius;
  if (!backdrop_.isNull()) {
    QBrush brush(backdrop_);
    const double ratio = backdrop_.devicePixelRatioF();
    brush.setTransform(QTransform::fromScale(1 / ratio, 1 / ratio) *
                       QTransform::fromTranslate(card_.x(), card_.y()));
    painter.setBrush(brush);
    painter.drawRoundedRect(QRectF(card_), radius, radius);
  }
  painter.setBrush(dialog_->appearance.backgroundColor);
  painter.drawRoundedRect(QRectF(card_), radius, radius);

  const double hairline = 1.0 / devicePixelRatioF();
  for (const QRect& separator : separators_) {
    QRectF line = separator;
    line.width() > line.height() ? line.setHeight(hairline) : line.setWidth(hairline);
    painter.fillRect(line, dialog_->appearance.separatorsColor);
  }
}

void RQAlertViewShadowView::paintBorder(QPainter& painter, const QRect& area) const {
  const RQAlertViewAppearance& look = dialog_->appearance;
  painter.setPen(QPen(look.layerBorderColor, look.layerBorderWidth));
  const double inset = look.layerBorderWidth / 2;
  const double radius = look.layerCornerRadius - inset;
  painter.drawRoundedRect(QRectF(area).adjusted(inset, inset, -inset, -inset), radius, radius);
}

void RQAlertViewShadowView::paintShadow(QPainter& painter) const {
  const RQAlertViewAppearance& look = dialog_->appearance;
  if (shadowMargin(look) == 0) return;
  const auto paint = [&](const QColor& color, double grow) {
    const QRectF shape = QRectF(card_).translated(look.layerShadowOffset).adjusted(-grow, -grow, grow, grow);
    const double radius = std::max(0.0, look.layerCornerRadius + grow);
    painter.setBrush(color);
    painter.drawRoundedRect(shape, radius, radius);
  };
  if (look.layerShadowRadius <= 0) return paint(look.layerShadowColor, 0);
  // Overlapping rings add up to the soft edge of a blur.
  const int rings = static_cast<int>(std::ceil(look.layerShadowRadius * 2));
  QColor ring = look.layerShadowColor;
  ring.setAlphaF(static_cast<float>(1 - std::pow(1 - look.layerShadowColor.alphaF() * 0.9, 1.0 / rings)));
  for (int step = 0; step < rings; ++step) paint(ring, look.layerShadowRadius - step);
}

void RQAlertViewScrollIndicator::install(QAbstractScrollArea& area) {
  area.setFrameShape(QFrame::NoFrame);
  area.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area.setVerticalScrollBar(new RQAlertViewScrollIndicator);
  // The card shows through.
  area.viewport()->setAutoFillBackground(false);
}

void RQAlertViewScrollIndicator::takeLook(QAbstractScrollArea& area, const RQAlertViewAppearance& look) {
  auto* bar = static_cast<RQAlertViewScrollIndicator*>(area.verticalScrollBar());
  bar->style_ = look.indicatorStyle;
  bar->update();
  area.setVerticalScrollBarPolicy(look.showsVerticalScrollIndicator ? Qt::ScrollBarAsNeeded
                                                                    : Qt::ScrollBarAlwaysOff);
}

QSize RQAlertViewScrollIndicator::sizeHint() const {
  return {scrollIndicatorRoom, scrollIndicatorRoom};
}

void RQAlertViewScrollIndicator::paintEvent(QPaintEvent*) {
  // Shown only where something scrolls, from 0 on.
  const double track = height() - 2 * scrollIndicatorInset;
  const double length =
      std::max<double>(track * pageStep() / (maximum() + pageStep()), scrollIndicatorLeastLength);
  const double top = scrollIndicatorInset + (track - length) * value() / maximum();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(style_ == UIScrollViewIndicatorStyle::White ? QColor(255, 255, 255, 128)
                                                               : QColor(0, 0, 0, 128));
  const QRectF bar((width() - scrollIndicatorWidth) / 2.0, top, scrollIndicatorWidth, length);
  painter.drawRoundedRect(bar, scrollIndicatorWidth / 2.0, scrollIndicatorWidth / 2.0);
}

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

void paintFocusRing(QPainter& painter, const QRectF& around, const QColor& color) {
  const double inset = focusRingInset + focusRingWidth / 2.0;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(color, focusRingWidth));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(around.adjusted(inset, inset, -inset, -inset), focusRingRadius, focusRingRadius);
}
