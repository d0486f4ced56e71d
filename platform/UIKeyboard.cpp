#include "platform/UIKeyboard.h"

#include "platform/EventLoop.h"
#include "platform/NSNotificationCenter.h"

#include <utility>

#include <QEasingCurve>
#include <QGuiApplication>
#include <QInputMethod>

namespace {

// Input methods do not report how they move; phones take this long.
constexpr double slideSeconds = 0.25;

// Of the one keyboard.
QRectF presentFrame;

void post(const QString& name, const QRectF& frame) {
  NSNotificationCenter::defaultCenter().postNotificationName(
      name, nullptr,
      {{UIKeyboardFrameEndUserInfoKey, frame},
       {UIKeyboardAnimationDurationUserInfoKey, slideSeconds},
       {UIKeyboardAnimationCurveUserInfoKey, static_cast<int>(QEasingCurve::OutCubic)}});
}

struct KeyRelease {
  int key = 0;
  quint64 time = 0;  // milliseconds of the display's clock; 0 for none
};

KeyRelease lastKeyRelease;

}  // namespace

UIKeyboard::UIKeyboard(QObject* parent) : QObject(parent) {
  const QInputMethod* inputMethod = QGuiApplication::inputMethod();
  connect(inputMethod, &QInputMethod::keyboardRectangleChanged, this,
          atEventBoundary([this] { readInputMethod(); }));
  connect(inputMethod, &QInputMethod::visibleChanged, this, atEventBoundary([this] { readInputMethod(); }));
}

void UIKeyboard::setFrame(const QRectF& frame) {
  if (frame == presentFrame) return;
  const QRectF before = std::exchange(presentFrame, frame);
  post(UIKeyboardWillChangeFrameNotification, frame);
  if (before.isEmpty() && !frame.isEmpty()) post(UIKeyboardWillShowNotification, frame);
  if (!before.isEmpty() && frame.isEmpty()) post(UIKeyboardWillHideNotification, frame);
}

QRectF UIKeyboard::frame() {
  return presentFrame;
}

void UIKeyboard::readInputMethod() {
  const QInputMethod* inputMethod = QGuiApplication::inputMethod();
  // In the coordinates of the focused window, which is the screen.
  setFrame(inputMethod->isVisible() ? inputMethod->keyboardRectangle() : QRectF());
}

bool isRepeated(const QKeyEvent& press) {
  return press.isAutoRepeat() || (lastKeyRelease.time != 0 && lastKeyRelease.time == press.timestamp() &&
                                  lastKeyRelease.key == press.key());
}

void noteKeyRelease(const QKeyEvent& release) {
  // Elsewhere two quick taps may have the same time.
  if (QGuiApplication::platformName() == QStringLiteral("xcb"))
    lastKeyRelease = {release.key(), release.timestamp()};
}
