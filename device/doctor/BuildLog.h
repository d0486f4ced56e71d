// What the best-known messages in a build's log mean.
#pragma once

#include "device/doctor/Finding.h"

#include <string_view>
#include <vector>

namespace device::doctor {

// Notes on what `log`, as a build wrote it, colours included, says went wrong: each cause once, with the
// line at which it was found. Of a log that is `cut`, whose beginning is missing, the first line counts as
// half a one and is passed over, and no line numbers are told. Never a Problem: what the log tells may have
// been mended since. Nothing of the log itself is in the answer. A log of a build that went well gives
// nothing.
std::vector<Finding> explainBuildLog(std::string_view log, bool cut = false);

}  // namespace device::doctor
