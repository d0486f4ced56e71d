// What the trial, a new project that is built, tells of Theos and the host.
#pragma once

#include "device/doctor/Facts.h"
#include "device/doctor/Finding.h"

namespace device::doctor {

// The trial's finding: the first thing that went wrong, its likely cause and what to do. `canBuildSoFar`: no
// other finding is a problem.
Finding trialFinding(const Facts& facts, bool canBuildSoFar);

}  // namespace device::doctor
