// The on-screen keyboard, which reports where it is so that views can keep clear of it, and keys that are
// held down.
#pragma once

#include <QKeyEvent>
#include <QObject>
#include <QRectF>
#include <QString>

// Posted with no object. userInfo: the end frame (QRectF in the screen's coordinates), the duration of the
// keyboard's own animation (double, seconds) and its curve (int, a QEasingCurve::Type).
inline const QString UIKeyboardWillShowNotification = QStringLiteral("UIKeyboardWillShowNotification");
inline const QString UIKeyboardWillHideNotification = QStringLiteral("UIKeyboardWillHideNotification");
inline const QString UIKeyboardWillChangeFrameNotification =
    QStringLiteral("UIKeyboardWillChangeFrameNotification");
inline const QString UIKeyboardFrameEndUserInfoKey = QStringLiteral("UIKeyboardFrameEndUserInfoKey");
inline const QString UIKeyboardAnimationDurationUserInfoKey =
    QStringLiteral("UIKeyboardAnimationDurationUserInfoKey");
inline const QString UIKeyboardAnimationCurveUserInfoKey =
    QStringLiteral("UIKeyboardAnimationCurveUserInfoKey");

// Made with the application; a desktop without an on-screen keyboard never reports anything.
class UIKeyboard : public QObject {
  Q_OBJECT

 public:
  // Watches the input method from now on.
  explicit UIKeyboard(QObject* parent);

  // `frame` is empty while no keyboard is shown. A change of frame is posted before the show or hide that it
  // belongs to.
  void setFrame(const QRectF& frame);
  // The present frame.
  static QRectF frame();

 private:
  void readInputMethod();
};

// Whether `press` comes from a key that is held down. X11 sends such repeats as a release and a press with
// the same time. If the press is late, Qt takes both for real: QKeyEvent::isAutoRepeat() alone is not enough.
bool isRepeated(const QKeyEvent& press);

// Call it with each key release, before anything handles it.
void noteKeyRelease(const QKeyEvent& release);
