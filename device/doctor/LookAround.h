// Gathers the facts.
#pragma once

#include "device/Process.h"
#include "device/doctor/Facts.h"
#include "device/launcher/Options.h"

namespace device::doctor {

// A device of the doctor's own, so that the user's is neither needed nor changed, nor its lock. It is gone
// with this object.
class PassingDevice {
 public:
  // With the Theos that the options mean. Throws Refusal.
  explicit PassingDevice(const Options& options);
  ~PassingDevice();
  PassingDevice(const PassingDevice&) = delete;
  PassingDevice& operator=(const PassingDevice&) = delete;

  // Runs a script that the device shows. Throws as capture() does.
  Captured runScript(const char* script, std::chrono::milliseconds limit) const;

 private:
  std::optional<std::filesystem::path> theos_;
  std::filesystem::path folder_;
};

// Everything but the trial, which takes some seconds and is of no use where something else is a problem.
Facts lookAround(const Options& options, const PassingDevice& device);
Trial tryBuild(const PassingDevice& device);

}  // namespace device::doctor
