#include "device/folder/ShippedFiles.h"

#include "device/Refusal.h"
#include "device/folder/Beneath.h"

#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <sys/stat.h>

namespace device {
namespace {

// Far above what is shipped; a file of the device may be anything.
constexpr std::size_t kLargest = 64 << 20;

// The one shipped file that does not stay in the application folder.
constexpr const char* kConverter = "ftt";

// A build may have filled the disk or put a folder in the way, which is no reason not to start.
bool put(int folder, const std::string& name, const std::string& content, mode_t mode) {
  if (writeAtomically(folder, name, content, mode)) return true;
  std::cerr << "tweakbench: The file " << name
            << " could not be put into the device: " << std::strerror(errno) << ".\n";
  return false;
}

}  // namespace

void shipFiles(const std::filesystem::path& source, const ShippedTo& device, int record,
               ApplicationFolder state) {
  const Descriptor shipped(open(source.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const auto names = shipped ? namesIn(shipped.get()) : std::nullopt;
  if (!names) refuseWithError("Tweakbench's own folder " + source.string() + " could not be read:");
  for (const auto& name : *names) {
    const auto now = readBeneath(shipped.get(), name, kLargest);
    if (!now) refuseWithError("Tweakbench's own file " + (source / name).string() + " could not be read:");
    const auto before = readBeneath(record, name, kLargest);
    const auto isOutdated = [&](int folder) {
      return before && *before != *now && readBeneath(folder, name, kLargest) == before;
    };
    struct stat status {};
    fstatat(shipped.get(), name.c_str(), &status, 0);
    const mode_t mode = (status.st_mode & S_IXUSR) != 0 ? 0755 : 0644;
    const bool isNew = !before && !exists(device.application, name);
    if (state == ApplicationFolder::New || isNew || isOutdated(device.application)) {
      if (!put(device.application, name, *now, mode)) continue;
    }
    if (name == kConverter && isOutdated(device.programs) && !put(device.programs, name, *now, mode))
      continue;
    // Last, so that a start that is killed before does it all again.
    if (before != now) writeAtomically(record, name, *now, 0644);
  }
}

}  // namespace device
