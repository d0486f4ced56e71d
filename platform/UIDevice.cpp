#include "platform/UIDevice.h"

#include "platform/UIScreen.h"

#include <algorithm>

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
