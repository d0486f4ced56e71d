// What of the host the device is built from, as the launcher finds it.
#pragma once

#include "device/sandbox/Environment.h"

#include <filesystem>

namespace device {

// The first program of that name in the caller's PATH; empty where there is none.
std::filesystem::path findProgram(const Environment& caller, const char* name);

// The first bwrap in the caller's PATH; throws Refusal where there is none.
std::filesystem::path findBubblewrap(const Environment& caller);

// The folder of the Theos that the device gets. Empty where there is none, and the practice Theos takes its
// place; throws Refusal where that is not what the options ask for. `home` is where ~/theos is looked for.
std::filesystem::path findTheos(const Options& options, const Environment& caller,
                                const std::filesystem::path& home);

}  // namespace device
