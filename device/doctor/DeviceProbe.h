// What programs do in a device, where they are tried so that nothing of Theos's is run on the bare host.
#pragma once

#include "device/doctor/Facts.h"

#include <string>
#include <string_view>

namespace device::doctor {

// A script for the device's shell, where the device shows it. It starts what builds start and prints one
// line for each thing it looked at, its fields parted by tabs.
inline constexpr const char* kProbe = "/.host/tweakbench/doctor-probe";

// The script that makes a project out of the template and builds it. It prints what is printed meanwhile and
// ends with 0 if a package came out.
inline constexpr const char* kTrial = "/.host/tweakbench/doctor-trial";

// Reads what the probe printed; lines that it cannot have printed are left out.
DeviceFacts readProbe(std::string_view output);

// The first number in a text and the one after its full stop.
Version versionIn(std::string_view text);
std::string textOf(const Version& version);

}  // namespace device::doctor
