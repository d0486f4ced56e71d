// What the facts mean for builds.
#pragma once

#include "device/doctor/Facts.h"
#include "device/doctor/Finding.h"

#include <vector>

namespace device::doctor {

// One finding for each check, in the order in which they are best mended.
std::vector<Finding> findingsFor(const Facts& facts);

bool canBuild(const std::vector<Finding>& findings);

}  // namespace device::doctor
