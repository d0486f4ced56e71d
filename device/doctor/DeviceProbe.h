// What programs do in a device, where they are tried so that nothing of Theos's is run on the bare host.
#pragma once

#include "device/doctor/Facts.h"

#include <string>
#include <string_view>

namespace device::doctor {

// The script for the device's shell, where the device shows it. It starts what builds start and prints one
// line for each thing it looked at, its fields parted by tabs.
inline constexpr const char* kProbe = "/.host/tweakbench/doctor-probe";

// Reads what the script printed; lines that it cannot have printed are left out.
DeviceFacts readProbe(std::string_view output);

}  // namespace device::doctor
