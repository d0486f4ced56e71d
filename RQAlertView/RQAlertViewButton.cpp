#include "RQAlertView/RQAlertViewButton.h"

#include "RQAlertView/RQAlertViewHelper.h"
#include "RQAlertView/RQAlertViewShadowView.h"
#include "RQAlertView/RQAlertViewText.h"
#include "platform/UIApplication.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QPainter>

namespace {

using namespace RQAlertViewMetrics;

using ButtonState = RQAlertViewButtonState;

QColor backgroundFor(const RQAlertViewButtonLook& look, ButtonState state) {
  if (state == ButtonState::Highlighted) return look.backgroundColorHighlighted;
  const bool disabled = state == ButtonState::Disabled && look.backgroundColorDisabled.isValid();
  return disabled ? look.backgroundColorDisabled : look.backgroundColor;
}

QColor titleColorFor(const RQAlertViewButtonLook& look, ButtonState state) {
  if (state == ButtonState::Highlighted) return look.titleColorHighlighted;
  return state == ButtonState::Disabled ? look.titleColorDisabled : look.titleColor;
}

const QPixmap& iconFor(const RQAlertViewButtonLook& look, ButtonState state) {
  if (state == ButtonState::Highlighted && !look.iconImageHighlighted.isNull())
    return look.iconImageHighlighted;
  if (state == ButtonState::Disabled && !look.iconImageDisabled.isNull()) return look.iconImageDisabled;
  return look.iconImage;
}

RQAlertViewTextStyle textStyleOf(const RQAlertViewButtonLook& look) {
  return {look.font,
          look.textAlignment,
          look.numberOfLines,
          look.lineBreakMode,
          look.adjustsFontSizeToFitWidth,
          look.minimumScaleFactor};
}

double iconSpace(const QPixmap& icon) {
  return icon.isNull() ? 0 : icon.deviceIndependentSize().width() + iconGap;
}

void fill(QPainter& painter, const RQAlertViewButtonPainting& painting, const QColor& color) {
  if (!color.isValid() || color.alpha() == 0) return;
  QPainterPath shape;
  shape.addRect(painting.rect);
  painter.fillPath(painting.card.isEmpty() ? shape : painting.card.intersected(shape), color);
}

void paintTitle(QPainter& painter, const RQAlertViewButtonPainting& painting) {
  const QRectF room = painting.rect.adjusted(painting.padding, 0, -painting.padding, 0);
  const QPixmap& icon = iconFor(painting.look, painting.state);
  const double space = iconSpace(icon);
  const RQAlertViewTextLayout text(painting.title, textStyleOf(painting.look), room.width() - space);

  // The icon is right beside the text in each alignment.
  const double free = std::max(0.0, room.width() - space - text.naturalWidth());
  double before = free / 2;
  if (painting.look.textAlignment == NSTextAlignment::Left) before = 0;
  if (painting.look.textAlignment == NSTextAlignment::Right) before = free;
  const bool iconIsLeft = painting.look.iconPosition == RQAlertViewButtonIconPosition::Left;
  const double textLeft = room.left() + (iconIsLeft ? space : 0);
  if (!icon.isNull()) {
    const double iconLeft = room.left() + before + (iconIsLeft ? 0 : text.naturalWidth() + iconGap);
    const double half = icon.deviceIndependentSize().height() / 2;
    painter.drawPixmap(QPointF(iconLeft, room.center().y() - half), icon);
  }
  painter.setPen(titleColorFor(painting.look, painting.state));
  text.paint(painter, {textLeft, room.top() + (room.height() - text.height()) / 2}, painting.rect);
}

}  // namespace

void paintRQAlertViewButton(QPainter& painter, const RQAlertViewButtonPainting& painting) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  fill(painter, painting, backgroundFor(painting.look, painting.state));
  if (painting.state == ButtonState::Hovered) {
    QColor tint = painting.look.titleColor;
    tint.setAlphaF(static_cast<float>(hoverTint));
    fill(painter, painting, tint);
  }
  paintTitle(painter, painting);
  if (painting.focusRing)
    paintFocusRing(painter, painting.rect, titleColorFor(painting.look, painting.state));
  painter.restore();
}

int heightOfRQAlertViewButton(const QString& title, const RQAlertViewButtonLook& look, int width, int padding,
                              double least) {
  const double room = width - 2 * padding - iconSpace(look.iconImage);
  const RQAlertViewTextLayout text(title, textStyleOf(look), room);
  const double icon = look.iconImage.isNull() ? 0 : look.iconImage.deviceIndependentSize().height();
  return static_cast<int>(
      std::ceil(std::max(least, std::max(text.height(), icon) + 2 * buttonPaddingVertical)));
}

double leastWidthOfRQAlertViewButton(const QString& title, const RQAlertViewButtonLook& look, int padding) {
  const double scale = look.adjustsFontSizeToFitWidth ? look.minimumScaleFactor : 1.0;
  return QFontMetricsF(look.font).horizontalAdvance(RQAlertViewText::displayText(title)) * scale +
         2 * padding + iconSpace(look.iconImage);
}

bool showsWholeTitle(const QString& title, const RQAlertViewButtonLook& look, int width, int padding) {
  return !RQAlertViewTextLayout(title, textStyleOf(look), width - 2 * padding - iconSpace(look.iconImage))
              .isTruncated();
}

RQAlertViewButton::RQAlertViewButton(RQAlertViewRow row, int padding, QWidget* parent)
    : QPushButton(parent), row_(std::move(row)), padding_(padding) {
  // A lone ampersand would become a shortcut.
  setText(QString(title()).replace(u'&', QStringLiteral("&&")));
  setAttribute(Qt::WA_Hover);
  setFocusPolicy(Qt::TabFocus);
  // Return presses the button that has the focus.
  setAutoDefault(true);
}

void RQAlertViewButton::setLook(const RQAlertViewButtonLook& look) {
  look_ = look;
  setEnabled(look.enabled);
  update();
}

void RQAlertViewButton::place(const QRect& area, const QPainterPath& card) {
  setGeometry(area);
  card_ = card.translated(-area.topLeft());
  update();
}

void RQAlertViewButton::setSelected(bool selected) {
  selected_ = selected;
  update();
}

void RQAlertViewButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintRQAlertViewButton(painter, {.title = title(),
                                   .look = look_,
                                   .state = buttonState(),
                                   .rect = rect(),
                                   .padding = padding_,
                                   .card = card_,
                                   .focusRing = isEnabled() && showsFocus(*this)});
}

void RQAlertViewButton::keyPressEvent(QKeyEvent* event) {
  if (!isRepeatedAnswer(*event)) QPushButton::keyPressEvent(event);
}

RQAlertViewButtonState RQAlertViewButton::buttonState() const {
  if (isDown() || selected_) return ButtonState::Highlighted;
  if (!isEnabled()) return ButtonState::Disabled;
  return underMouse() ? ButtonState::Hovered : ButtonState::Normal;
}
