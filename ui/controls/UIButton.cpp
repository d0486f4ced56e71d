#include "ui/controls/UIButton.h"

#include "platform/UIApplication.h"

#include <algorithm>

#include <QPainter>
#include <QPixmapCache>
#include <QShortcut>

namespace {

constexpr int knobInset = 3;

// The ground of a state, lighter or darker than the layer's own; a bare button gets a faint one.
QColor stated(const QColor& own, int lighter) {
  if (!own.isValid()) return QColor(255, 255, 255, lighter);
  return QColor(std::clamp(own.red() + lighter, 0, 255), std::clamp(own.green() + lighter, 0, 255),
                std::clamp(own.blue() + lighter, 0, 255));
}

}  // namespace

UIButton::UIButton(QWidget* parent) : UIButton(QString(), parent) {}

UIButton::UIButton(const QString& title, QWidget* parent) : QPushButton(title, parent) {
  setFlat(true);
  setAttribute(Qt::WA_Hover);
  // Return clicks it, as Space does.
  setAutoDefault(true);
  setFocusPolicy(Qt::StrongFocus);
  setFont(systemFontOfSize(metrics::bodyTextSize));
}

void UIButton::setLayer(const Layer& layer) {
  layer_ = layer;
  update();
}

void UIButton::setFollowsReadingDirection(bool follows) {
  followsReadingDirection_ = follows;
  update();
}

void UIButton::setPicture(const QString& name) {
  picture_ = QStringLiteral(":/pictures/") + name;
  update();
}

void UIButton::dress(const char* picture, const QString& accessibleName) {
  setPicture(QLatin1String(picture));
  setAccessibleName(accessibleName);
}

void UIButton::setPictureSize(int side) {
  pictureSize_ = side;
  updateGeometry();
  update();
}

// The smallest of the four sizes that is drawn at least as fine as the screen shows it; read when it is
// first painted, so that a start reads nothing that is not seen.
QPixmap UIButton::pictureFor(qreal ratio) const {
  const QString ending = ratio > 3   ? QStringLiteral("@4x.png")
                         : ratio > 2 ? QStringLiteral("@3x.png")
                         : ratio > 1 ? QStringLiteral("@2x.png")
                                     : QStringLiteral(".png");
  QPixmap pixmap;
  if (!QPixmapCache::find(picture_ + ending, &pixmap)) {
    pixmap.load(picture_ + ending);
    QPixmapCache::insert(picture_ + ending, pixmap);
  }
  return pixmap;
}

QSize UIButton::sizeHint() const {
  if (!picture_.isEmpty()) return {metrics::touchSize, metrics::touchSize};
  const QFontMetrics font(this->font());
  const int width =
      text().isEmpty() ? metrics::touchSize : font.horizontalAdvance(text()) + 2 * metrics::buttonPadding;
  return {std::max(width, metrics::touchSize),
          std::max(font.height() + metrics::buttonPadding, metrics::touchSize)};
}

QColor UIButton::groundPressed(const QColor& own) {
  return stated(own, own.isValid() ? -24 : 40);
}

QColor UIButton::groundUnderPointer(const QColor& own) {
  // A ground that is light already gets darker, so that the caption stays readable.
  return stated(own, own.lightness() < 100 ? 16 : -12);
}

QColor UIButton::ground() const {
  if (!isEnabled()) return layer_.backgroundColor;
  if (isDown()) return groundPressed(layer_.backgroundColor);
  if (underMouse()) return groundUnderPointer(layer_.backgroundColor);
  return layer_.backgroundColor;
}

void UIButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  Layer drawn = layer_;
  if (!drawn.backgroundColor.isValid()) drawn.cornerRadius = metrics::bareButtonRadius;
  drawLayer(painter, rect(), drawn, ground());
  if (showsFocus(*this)) drawFocusRing(painter, rect(), drawn.cornerRadius);
  painter.setOpacity(isDimmed(*this) ? 0.4 : 1);
  if (!picture_.isEmpty()) {
    QRect place(0, 0, pictureSize_, pictureSize_);
    place.moveCenter(rect().center());
    if (followsReadingDirection_ && isRightToLeft()) {
      painter.translate(2 * rect().center().x() + 1, 0);
      painter.scale(-1, 1);
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(place, pictureFor(devicePixelRatioF() * pictureSize_ / metrics::iconSize));
    return;
  }
  painter.setPen(palette().color(QPalette::Active, QPalette::ButtonText));
  const QRect inside = rect().adjusted(metrics::buttonPadding / 2, 0, -metrics::buttonPadding / 2, 0);
  painter.drawText(inside, Qt::AlignCenter, fontMetrics().elidedText(text(), Qt::ElideRight, inside.width()));
}

void UISwitch::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setOpacity(isDimmed(*this) ? 0.4 : 1);
  const qreal radius = height() / 2.0;
  Layer groove{radius, 0,
               isChecked() ? palette().color(QPalette::Active, QPalette::Highlight) : colours::switchOff};
  drawLayer(painter, rect(), groove, groove.backgroundColor);
  if (showsFocus(*this)) drawFocusRing(painter, rect(), radius);
  const int size = height() - 2 * knobInset;
  const bool atRight = isChecked() != isRightToLeft();
  painter.setPen(Qt::NoPen);
  painter.setBrush(colours::switchKnob);
  painter.drawEllipse(atRight ? width() - size - knobInset : knobInset, knobInset, size, size);
}

void addShortcut(UIButton& button, const QKeySequence& keys) {
  // The view as a whole, which has no parent yet while its buttons are wired.
  auto* const shortcut = new QShortcut(keys, button.window());
  // A key that is held down does what it does once: the next screen may have it mean something else.
  shortcut->setAutoRepeat(false);
  QObject::connect(shortcut, &QShortcut::activated, &button, [&button] {
    // In the dialog that comes, too.
    showFocusRings(*button.window(), true);
    button.click();
  });
  nameShortcut(button, keys);
}

void nameShortcut(UIButton& button, const QKeySequence& keys) {
  const QString name = button.accessibleName().isEmpty() ? button.text() : button.accessibleName();
  button.setToolTip(QStringLiteral("%1 (%2)").arg(name, keys.toString(QKeySequence::NativeText)));
}
