#include "RQAlertView/RQAlertViewTextField.h"

#include <QFocusEvent>

RQAlertViewTextField::RQAlertViewTextField(QWidget* parent) : QLineEdit(parent) {
  setFrame(false);
  connect(this, &QLineEdit::textChanged, this, [this] { updateClearButton(); });
}

void RQAlertViewTextField::setClearButtonMode(UITextFieldViewMode mode) {
  clearButtonMode_ = mode;
  updateClearButton();
}

void RQAlertViewTextField::setSecureTextEntry(bool secure) {
  setEchoMode(secure ? QLineEdit::Password : QLineEdit::Normal);
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

void RQAlertViewTextField::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  // Coming back from another program does not begin anything.
  if (clearsOnBeginEditing_ && event->reason() != Qt::ActiveWindowFocusReason) clear();
  updateClearButton();
}

void RQAlertViewTextField::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  updateClearButton();
}

void RQAlertViewTextField::updateClearButton() {
  const bool editing = isFirstResponder();
  bool shown = false;
  switch (clearButtonMode_) {
    case UITextFieldViewMode::Never:
      shown = false;
      break;
    case UITextFieldViewMode::WhileEditing:
      shown = editing;
      break;
    case UITextFieldViewMode::UnlessEditing:
      shown = !editing;
      break;
    case UITextFieldViewMode::Always:
      shown = true;
      break;
  }
  if (isClearButtonEnabled() != shown) setClearButtonEnabled(shown);
}
