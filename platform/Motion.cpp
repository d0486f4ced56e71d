#include "platform/Motion.h"

#include "core/ReducedMotion.h"

#include <optional>

#include <QtGlobal>

namespace {

std::optional<bool>& chosen() {
  static std::optional<bool> value;
  return value;
}

}  // namespace

bool motionEnabled() {
  if (!chosen()) {
    // The desktop's settings cannot be seen from in here; the launcher has looked.
    return !qEnvironmentVariableIsSet(reducedMotionVariable);
  }
  return *chosen();
}

void setMotionEnabled(bool enabled) {
  chosen() = enabled;
}
