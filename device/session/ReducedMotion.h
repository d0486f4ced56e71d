// Whether the caller's desktop asks for as little motion as possible.
#pragma once

#include "device/sandbox/Environment.h"

#include <chrono>
#include <filesystem>

namespace device {

// Asks the settings of the two common desktops, in files below `home` and of the caller's session; no answer
// within `patience` means no. To be called as the device's user: another's settings are not its own.
bool prefersReducedMotion(const Environment& caller, const std::filesystem::path& home,
                          std::chrono::milliseconds patience = std::chrono::seconds(2));

// Tells the application so; commands do not get to see it.
void addReducedMotion(Environment& environment);

}  // namespace device
