#include "ui/controls/TextZoom.h"

#include "platform/ApplicationStyle.h"
#include "ui/controls/Metrics.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QShortcut>
#include <QWheelEvent>

namespace {

constexpr int smallestLevel = -5;
constexpr int largestLevel = 12;
constexpr double stepRatio = 1.1;

int chosenLevel = 0;

QFont fontOfLevel(int level) {
  return fixedPitchFontOfSize(metrics::fixedPitchTextSize * std::pow(stepRatio, level));
}

}  // namespace

TextZoom::TextZoom(QAbstractScrollArea* text) : QObject(text), text_(text) {
  text->viewport()->installEventFilter(this);
  const auto wire = [&](const QList<QKeySequence>& keys, auto level) {
    for (const QKeySequence& key : keys) {
      auto* const shortcut = new QShortcut(key, text->parentWidget());
      connect(shortcut, &QShortcut::activated, this, [this, level] { setLevel(level()); });
    }
  };
  // Plus lies on a key of its own, or above the equals sign.
  wire({QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)},
       [] { return chosenLevel + 1; });
  wire({QKeySequence(Qt::CTRL | Qt::Key_Minus)}, [] { return chosenLevel - 1; });
  wire({QKeySequence(Qt::CTRL | Qt::Key_0)}, [] { return 0; });
  text->setFont(fontOfLevel(chosenLevel));
}

bool TextZoom::eventFilter(QObject* object, QEvent* event) {
  if (event->type() != QEvent::Wheel) return QObject::eventFilter(object, event);
  const auto* const wheel = static_cast<QWheelEvent*>(event);
  if ((wheel->modifiers() & Qt::ControlModifier) == 0) return false;
  wheelAngle_ += wheel->angleDelta().y();
  const int steps = wheelAngle_ / QWheelEvent::DefaultDeltasPerStep;
  wheelAngle_ -= steps * QWheelEvent::DefaultDeltasPerStep;
  setLevel(chosenLevel + steps);
  return true;
}

void TextZoom::setLevel(int level) {
  level = std::clamp(level, smallestLevel, largestLevel);
  if (level == std::exchange(chosenLevel, level)) return;
  text_->setFont(fontOfLevel(level));
}
