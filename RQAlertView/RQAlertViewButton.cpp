#include "RQAlertView/RQAlertViewButton.h"

#include "RQAlertView/RQAlertViewTypes.h"

#include <QPainter>

RQAlertViewButton::RQAlertViewButton(const QString& title, int padding, QWidget* parent)
    : QPushButton(parent), title_(title), padding_(padding) {
  // A lone ampersand would become a shortcut.
  setText(QString(title).replace(u'&', QStringLiteral("&&")));
  setAttribute(Qt::WA_Hover);
  setFocusPolicy(Qt::TabFocus);
  // Return presses the button that has the focus.
  setAutoDefault(true);
}

void RQAlertViewButton::setLook(const RQAlertViewButtonLook& look) {
  look_ = look;
  update();
}

void RQAlertViewButton::setCard(const QPainterPath& card) {
  card_ = card;
  update();
}

void RQAlertViewButton::setSelected(bool selected) {
  selected_ = selected;
  update();
}

void RQAlertViewButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintRQAlertViewButton(painter, {.title = title_,
                                   .look = look_,
                                   .state = buttonState(),
                                   .rect = rect(),
                                   .padding = padding_,
                                   .card = card_,
                                   .focusRing = hasFocus() && isEnabled() &&
                                                window()->testAttribute(Qt::WA_KeyboardFocusChange)});
}

void RQAlertViewButton::keyPressEvent(QKeyEvent* event) {
  if (!isRepeatedAnswer(*event)) QPushButton::keyPressEvent(event);
}

RQAlertViewButtonState RQAlertViewButton::buttonState() const {
  if (isDown() || selected_) return RQAlertViewButtonState::Highlighted;
  if (!isEnabled()) return RQAlertViewButtonState::Disabled;
  return underMouse() ? RQAlertViewButtonState::Hovered : RQAlertViewButtonState::Normal;
}
