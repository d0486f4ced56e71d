// Why the device could not be set up, in one sentence.
#pragma once

#include <optional>
#include <string>

namespace device {

// The kernel's switches for user namespaces; absent where the kernel has none.
struct NamespaceSettings {
  std::optional<long> unprivilegedClone;
  std::optional<long> maximum;
  std::optional<long> appArmorRestriction;
};

NamespaceSettings readNamespaceSettings();

// Begins what is said where the system refuses a device.
inline constexpr const char* kSetUpFailed = "The device could not be set up: ";

// `message` is what bubblewrap wrote, possibly nothing. The answer says what to do where something can be
// done.
std::string explainFailure(const std::string& message, const NamespaceSettings& settings);

}  // namespace device
