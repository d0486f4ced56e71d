#include "platform/UIDevice.h"

#include "core/LauncherContract.h"
#include "platform/UIScreen.h"

#include <algorithm>
#include <optional>

#include <QtGlobal>

namespace {

// Logical pixels: the shorter side of the smallest pad.
constexpr int shortestPadSide = 744;

}  // namespace

UIDevice& UIDevice::currentDevice() {
  static UIDevice device;
  return device;
}

UIUserInterfaceIdiom UIDevice::userInterfaceIdiom() const {
  if (idiom_) return *idiom_;
  const QSize size = UIScreen::mainScreen()->size();
  return std::min(size.width(), size.height()) >= shortestPadSide ? UIUserInterfaceIdiom::Pad
                                                                  : UIUserInterfaceIdiom::Phone;
}

void UIDevice::setUserInterfaceIdiom(std::optional<UIUserInterfaceIdiom> idiom) {
  idiom_ = idiom;
}

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
