#include "ui/controls/Shortcut.h"

#include "ui/controls/UIButton.h"

#include <QShortcut>

void addShortcut(UIButton& button, const QKeySequence& keys) {
  // The view as a whole, which has no parent yet while its buttons are wired.
  auto* const shortcut = new QShortcut(keys, button.window());
  // A key that is held down does what it does once: the next screen may have it mean something else.
  shortcut->setAutoRepeat(false);
  QObject::connect(shortcut, &QShortcut::activated, &button, [&button] {
    // Who uses the keyboard has to see what has the focus in the dialog that comes.
    button.window()->setAttribute(Qt::WA_KeyboardFocusChange);
    button.click();
  });
  nameShortcut(button, keys);
}

void nameShortcut(UIButton& button, const QKeySequence& keys) {
  const QString name = button.accessibleName().isEmpty() ? button.text() : button.accessibleName();
  button.setToolTip(QStringLiteral("%1 (%2)").arg(name, keys.toString(QKeySequence::NativeText)));
}
