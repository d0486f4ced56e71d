// Gathers the facts.
#pragma once

#include "device/doctor/Facts.h"
#include "device/launcher/Options.h"

namespace device::doctor {

// Starts a device of its own for a moment, so that the user's is neither needed nor changed, nor its lock.
Facts lookAround(const Options& options);

}  // namespace device::doctor
