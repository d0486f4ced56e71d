// A one-line input field of a dialog.
#pragma once

#include "platform/ApplicationStyle.h"

#include <cstddef>
#include <functional>

#include <QColor>
#include <QFont>
#include <QLineEdit>

// Made by the dialog, one for each number up to numberOfTextFields; owned by it. Texts are plain text. The
// accessible name is the placeholder, else the dialog's title, unless the application sets one.
class RQAlertViewTextField : public QLineEdit {
  Q_OBJECT

 public:
  explicit RQAlertViewTextField(QWidget* parent = nullptr);

  void setPlaceholder(const QString& placeholder) { setPlaceholderText(placeholder); }
  // Hides the base class's: the accessible name follows the placeholder.
  void setPlaceholderText(const QString& placeholder);
  // The accessible name as long as there is no placeholder.
  void setTitle(const QString& title);

  // A hint for an on-screen keyboard; a desktop's keyboard has no appearance.
  void setKeyboardAppearance(UIKeyboardAppearance appearance) { keyboardAppearance_ = appearance; }
  UIKeyboardAppearance keyboardAppearance() const { return keyboardAppearance_; }

  // When the button that empties the field is shown. It never is while the field is empty.
  void setClearButtonMode(UITextFieldViewMode mode);
  UITextFieldViewMode clearButtonMode() const { return clearButtonMode_; }

  void setSecureTextEntry(bool secure) { setEchoMode(secure ? QLineEdit::Password : QLineEdit::Normal); }

  void setClearsOnBeginEditing(bool clears) { clearsOnBeginEditing_ = clears; }

  static QColor placeholderColor(const QColor& text);
  // On the tint, which may be light or dark.
  static QColor selectedTextColor(const QColor& tint);
  void setColors(const QColor& background, const QColor& text);
  // Marks the field that has the focus, and selected text.
  void setTintColor(const QColor& tint);

  // Makes the font of a text that is too wide smaller, down to `minimumSize` logical pixels. The font that
  // was set comes back when there is room for it, or when this is switched off.
  void setAdjustsFontSizeToFitWidth(bool adjusts, double minimumSize);

  // Takes or gives up the input focus; returns whether that succeeded. A field that is not shown yet cannot
  // take it.
  bool becomeFirstResponder();
  bool resignFirstResponder();
  bool isFirstResponder() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void updateClearButton();
  void updateAccessibleName();
  void fitFont();

  QAction* clearAction_;
  QColor background_;
  QColor tint_;
  QString title_;
  QString nameFromTexts_;
  QFont fullFont_;
  bool fitting_ = false;
  bool adjustsFontSize_ = false;
  double minimumFontSize_ = 0;

  UIKeyboardAppearance keyboardAppearance_ = UIKeyboardAppearance::Default;
  UITextFieldViewMode clearButtonMode_ = UITextFieldViewMode::Never;
  bool clearsOnBeginEditing_ = false;
};

using RQAlertViewTextFieldsSetupHandler =
    std::function<void(RQAlertViewTextField& textField, std::size_t index)>;
