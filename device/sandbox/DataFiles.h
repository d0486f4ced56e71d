// The small files that the device gets instead of the host's.
#pragma once

#include "device/launcher/Options.h"
#include "device/sandbox/Account.h"

#include <string>
#include <vector>

namespace device {

struct DataFileContent {
  // In the device.
  std::string path;
  std::string content;
};

// Accounts, name service, fonts; with the network also what resolves names.
std::vector<DataFileContent> deviceDataFiles(const Account& account, Options::Network network);

// The configuration that makes fontconfig use the host's fonts and its ready cache, and nothing that the
// device can write. `rules` are the configuration files to include.
std::string fontConfiguration(const std::vector<std::string>& rules);

}  // namespace device
