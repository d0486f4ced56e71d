#include "platform/Motion.h"

#include <optional>

#include <QApplication>
#include <QStyle>

namespace {

std::optional<bool>& chosen() {
  static std::optional<bool> value;
  return value;
}

}  // namespace

bool motionEnabled() {
  if (!chosen()) {
    // Desktops with animations switched off hand that on as a duration of none.
    const QStyle* style = QApplication::style();
    return style && style->styleHint(QStyle::SH_Widget_Animation_Duration) > 0;
  }
  return *chosen();
}

void setMotionEnabled(bool enabled) {
  chosen() = enabled;
}
