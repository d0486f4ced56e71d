// tweakbench doctor: looks from outside the application at what builds need, and says what is wrong.
#pragma once

#include "device/launcher/Options.h"

namespace device::doctor {

// Prints one line for each check to standard output. Returns 0 if a build works or, where the options
// leave the trial out, nothing was found against it, otherwise 1; ends with a signal that came; throws
// Refusal where nothing could be looked at. To be called from the main thread of a process without others.
int examine(const Options& options);

}  // namespace device::doctor
