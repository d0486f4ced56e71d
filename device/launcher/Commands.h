// The launcher's commands, each in a file of its own.
#pragma once

#include "device/launcher/Options.h"
#include "device/sandbox/Account.h"
#include "device/sandbox/Environment.h"

#include <filesystem>
#include <sys/types.h>

namespace device {

// The launcher's own failures, apart from what programs commonly return.
inline constexpr int kFailed = 125;

// Where the device is that the options mean.
std::filesystem::path deviceOf(const Options& options, const Environment& caller, const Account& account);

// Each returns the launcher's exit status and throws Refusal where the device could not be set up. To be
// called from the main thread of a process without others.
//
// Opens the application, a shell or a command in the device.
int run(const Options& options);
// import and export; `callerUmask` is taken from the modes of what is made on the host.
int transfer(const Options& options, mode_t callerUmask);

}  // namespace device
