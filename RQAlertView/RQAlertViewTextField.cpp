#include "RQAlertView/RQAlertViewTextField.h"

#include "RQAlertView/RQAlertViewHelper.h"
#include "RQAlertView/RQAlertViewText.h"
#include "platform/UIKeyboard.h"

#include <algorithm>
#include <cmath>

#include <QAction>
#include <QFocusEvent>
#include <QPainter>
#include <QRegularExpression>

namespace {

using namespace RQAlertViewMetrics;

constexpr int clearIconSide = 16;
constexpr double focusBorderWidth = 1.5;

QIcon clearIcon(const QColor& text) {
  constexpr int scale = 3;  // sharp on dense screens too
  QPixmap picture(clearIconSide * scale, clearIconSide * scale);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(scale, scale);
  QColor disc = text;
  disc.setAlphaF(0.45F);
  painter.setPen(Qt::NoPen);
  painter.setBrush(disc);
  painter.drawEllipse(QRectF(1, 1, 14, 14));
  painter.setCompositionMode(QPainter::CompositionMode_Clear);
  painter.setPen(QPen(Qt::black, 1.4, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(5.6, 5.6), QPointF(10.4, 10.4));
  painter.drawLine(QPointF(10.4, 5.6), QPointF(5.6, 10.4));
  return picture;
}

}  // namespace

RQAlertViewTextField::RQAlertViewTextField(QWidget* parent)
    : QLineEdit(parent), clearAction_(new QAction(tr("Clear text"), this)) {
  setFrame(false);
  setTextMargins(textFieldPadding, 0, textFieldPadding, 0);
  addAction(clearAction_, QLineEdit::TrailingPosition);
  connect(clearAction_, &QAction::triggered, this, &QLineEdit::clear);
  connect(this, &QLineEdit::textChanged, this, [this] {
    updateClearButton();
    fitFont();
  });
  // What is pasted may be several lines.
  connect(this, &QLineEdit::textEdited, this, [this](const QString& edited) {
    static const QRegularExpression lineEnd(QStringLiteral("[\\r\\n\\x{2028}\\x{2029}]+"));
    if (edited.contains(lineEnd)) setText(edited.split(lineEnd, Qt::SkipEmptyParts).join(QLatin1Char(' ')));
  });
  fullFont_ = font();
}

void RQAlertViewTextField::setPlaceholderText(const QString& placeholder) {
  QLineEdit::setPlaceholderText(placeholder);
  updateAccessibleName();
}

void RQAlertViewTextField::setTitle(const QString& title) {
  title_ = title;
  updateAccessibleName();
}

void RQAlertViewTextField::updateAccessibleName() {
  // A name that the application has set stays.
  if (accessibleName() != nameFromTexts_) return;
  nameFromTexts_ = placeholderText().isEmpty() ? title_ : placeholderText();
  setAccessibleName(nameFromTexts_);
}

void RQAlertViewTextField::setClearButtonMode(UITextFieldViewMode mode) {
  clearButtonMode_ = mode;
  updateClearButton();
}

QColor RQAlertViewTextField::placeholderColor(const QColor& text) {
  // Weaker than typed text, and still readable.
  QColor color = text;
  color.setAlphaF(0.6F);
  return color;
}

QColor RQAlertViewTextField::selectedTextColor(const QColor& tint) {
  const auto linear = [](float part) {
    return part <= 0.04045F ? part / 12.92F : std::pow((part + 0.055F) / 1.055F, 2.4F);
  };
  const float luminance =
      0.2126F * linear(tint.redF()) + 0.7152F * linear(tint.greenF()) + 0.0722F * linear(tint.blueF());
  // Above this black has more contrast than white.
  return luminance > 0.179F ? Qt::black : Qt::white;
}

void RQAlertViewTextField::setColors(const QColor& background, const QColor& text) {
  background_ = background;
  QPalette colors = palette();
  // The background is painted here, with rounded corners.
  colors.setColor(QPalette::Base, Qt::transparent);
  colors.setColor(QPalette::Text, text);
  colors.setColor(QPalette::PlaceholderText, placeholderColor(text));
  setPalette(colors);
  clearAction_->setIcon(clearIcon(text));
}

void RQAlertViewTextField::setTintColor(const QColor& tint) {
  tint_ = tint;
  QPalette colors = palette();
  colors.setColor(QPalette::Highlight, tint);
  colors.setColor(QPalette::HighlightedText, selectedTextColor(tint));
  setPalette(colors);
}

void RQAlertViewTextField::setAdjustsFontSizeToFitWidth(bool adjusts, double minimumSize) {
  adjustsFontSize_ = adjusts;
  minimumFontSize_ = minimumSize;
  fitFont();
}

bool RQAlertViewTextField::becomeFirstResponder() {
  setFocus(Qt::OtherFocusReason);
  return isFirstResponder();
}

bool RQAlertViewTextField::resignFirstResponder() {
  clearFocus();
  return !isFirstResponder();
}

bool RQAlertViewTextField::isFirstResponder() const {
  return window()->focusWidget() == this;
}

void RQAlertViewTextField::keyPressEvent(QKeyEvent* event) {
  // Return held down was meant for what had the focus before.
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!isReturn || !isRepeated(*event)) QLineEdit::keyPressEvent(event);
}

void RQAlertViewTextField::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  // Coming back from another program or a menu is not a beginning.
  const bool begins =
      event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason;
  if (clearsOnBeginEditing_ && begins) clear();
  updateClearButton();
}

void RQAlertViewTextField::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  updateClearButton();
}

void RQAlertViewTextField::changeEvent(QEvent* event) {
  QLineEdit::changeEvent(event);
  if (event->type() != QEvent::FontChange || fitting_) return;
  fullFont_ = font();
  fitFont();
}

void RQAlertViewTextField::resizeEvent(QResizeEvent* event) {
  QLineEdit::resizeEvent(event);
  fitFont();
}

void RQAlertViewTextField::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double inset = focusBorderWidth / 2;
    painter.setPen(hasFocus() ? QPen(tint_, focusBorderWidth) : QPen(Qt::NoPen));
    painter.setBrush(background_);
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), textFieldCornerRadius,
                            textFieldCornerRadius);
  }
  QLineEdit::paintEvent(event);
}

void RQAlertViewTextField::updateClearButton() {
  const auto unwanted =
      isFirstResponder() ? UITextFieldViewMode::UnlessEditing : UITextFieldViewMode::WhileEditing;
  const bool shown = clearButtonMode_ != UITextFieldViewMode::Never && clearButtonMode_ != unwanted;
  clearAction_->setVisible(shown && !text().isEmpty() && !isReadOnly());
}

void RQAlertViewTextField::fitFont() {
  QFont fitted = fullFont_;
  const double full = fullFont_.pointSizeF();
  if (adjustsFontSize_ && full > 0) {
    const double room =
        width() - 2.0 * textFieldPadding - (clearAction_->isVisible() ? 2 * clearIconSide : 0);
    const double natural = QFontMetricsF(fullFont_).horizontalAdvance(text());
    const double least = std::min(minimumFontSize_ * 72.0 / 96.0, full);
    if (natural > room && room > 0) fitted.setPointSizeF(std::max(least, full * room / natural));
  }
  if (fitted == font()) return;
  fitting_ = true;
  setFont(fitted);
  fitting_ = false;
}
