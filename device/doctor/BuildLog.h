// What the best-known messages in a build's log mean.
#pragma once

#include "device/doctor/Finding.h"

#include <string_view>
#include <vector>

namespace device::doctor {

// Notes on what `log`, as a build wrote it, colours included, says went wrong: each cause once, with the
// line at which it was found, counted in `log`. Never a Problem: what the log tells may have been mended
// since. Nothing of the log itself is in the answer. A log of a build that went well gives nothing.
std::vector<Finding> explainBuildLog(std::string_view log);

}  // namespace device::doctor
