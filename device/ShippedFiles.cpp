#include "device/ShippedFiles.h"

#include "device/Beneath.h"
#include "device/Refusal.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace device {
namespace {

// Far above what is shipped; a file of the device may be anything.
constexpr std::size_t kLargest = 64 << 20;

}  // namespace

void shipFiles(const std::filesystem::path& source, int application, int record, ApplicationFolder state) {
  const Descriptor shipped(open(source.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const auto names = shipped ? namesIn(shipped.get()) : std::nullopt;
  if (!names) refuseWithError("Tweakbench's own folder " + source.string() + " could not be read:");
  for (const auto& name : *names) {
    const auto now = readBeneath(shipped.get(), name, kLargest);
    if (!now) refuseWithError("Tweakbench's own file " + (source / name).string() + " could not be read:");
    const auto before = readBeneath(record, name, kLargest);
    const bool isNew = !before && !exists(application, name);
    const bool isUntouched = before && *before != *now && readBeneath(application, name, kLargest) == before;
    if (state == ApplicationFolder::New || isNew || isUntouched) {
      struct stat status {};
      fstatat(shipped.get(), name.c_str(), &status, 0);
      const mode_t mode = (status.st_mode & S_IXUSR) != 0 ? 0755 : 0644;
      if (!writeAtomically(application, name, *now, mode)) {
        refuseWithError("The file " + name + " could not be put into the device:");
      }
    }
    if (before != now && !writeAtomically(record, name, *now, 0644)) {
      refuseWithError("The device's record of " + name + " could not be written:");
    }
  }
}

}  // namespace device
