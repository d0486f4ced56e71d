#include "device/Transfer.h"

#include "device/Beneath.h"
#include "device/Refusal.h"
#include "device/Visible.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace device {
namespace {

namespace fs = std::filesystem;

constexpr const char* kProjects = "Tweakyard/Projects";
// On the same file system as the projects, and not one of them.
constexpr const char* kBesideProjects = "Tweakyard";

// Kept short of what a file name may have, for the rest of a temporary name.
constexpr std::size_t kLongestName = 200;

void requireEntryName(const std::string& name) {
  const bool hasControl = visible(name) != name;
  if (name.empty() || name == "." || name == ".." || hasControl || name.find('/') != std::string::npos ||
      name.size() > kLongestName) {
    throw Refusal("\"" + visible(name) + "\" is no project's name.");
  }
}

fs::path pathOf(int folder) {
  return fs::read_symlink("/proc/self/fd/" + std::to_string(folder));
}

bool isWithin(const fs::path& path, const fs::path& folder) {
  return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
}

Descriptor openHostFolder(const fs::path& path) {
  Descriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder) refuseWithError(visible(path.string()) + " cannot be opened as a folder:");
  return folder;
}

// What lies in the device is reached by descriptors only, and a path of the host would be a name.
void requireOutside(int folder, const fs::path& path, const fs::path& device) {
  std::error_code error;
  const fs::path whole = fs::weakly_canonical(device, error);
  if (isWithin(pathOf(folder), whole)) {
    throw Refusal(visible(path.string()) + " lies in the device; use a folder outside it.");
  }
}

// With a last component, links in it not followed.
fs::path wholePath(const fs::path& path) {
  const fs::path whole = fs::absolute(path).lexically_normal();
  return whole.has_filename() ? whole : whole.parent_path();
}

// A new folder under a name of its own, which gets its real name when everything is in it, or is deleted.
class Unfinished {
 public:
  Unfinished(int parent, std::string name, const Rights& rights)
      : parent_(parent), name_(std::move(name)), rights_(rights) {
    rights_.assume();
    // Of a process of this number that was killed.
    removeBeneath(parent_, name_);
    if (mkdirat(parent_, name_.c_str(), 0700) != 0) refuseWithError("The copy could not be made:");
    folder_ = openFolderBeneath(parent_, name_);
    if (!folder_) refuseWithError("The copy could not be made:");
  }
  ~Unfinished() {
    if (!folder_) return;
    try {
      rights_.assume();
      removeBeneath(parent_, name_);
    } catch (const Refusal&) {
    }
  }
  Unfinished(const Unfinished&) = delete;
  Unfinished& operator=(const Unfinished&) = delete;

  int folder() const { return folder_.get(); }

  void finish(int parent, const std::string& name, mode_t mode) {
    rights_.assume();
    if (fchmod(folder_.get(), mode) != 0 || !renameToNew(parent, name)) {
      if (errno == EEXIST || errno == ENOTEMPTY) throw Refusal(visible(name) + " is there already.");
      refuseWithError("The copy could not be named " + visible(name) + ":");
    }
    folder_.close();
  }

 private:
  bool renameToNew(int parent, const std::string& name) const {
    if (renameat2(parent_, name_.c_str(), parent, name.c_str(), RENAME_NOREPLACE) == 0) return true;
    // Some file systems know the plain step only, which still replaces nothing but an empty folder.
    if (errno != EINVAL && errno != ENOSYS) return false;
    if (exists(parent, name)) {
      errno = EEXIST;
      return false;
    }
    return renameat(parent_, name_.c_str(), parent, name.c_str()) == 0;
  }

  int parent_;
  std::string name_;
  const Rights& rights_;
  Descriptor folder_;
};

Descriptor openProjects(const Transfer& transfer, const char* folder) {
  transfer.inDevice.assume();
  Descriptor opened = openFolderBeneath(transfer.var.get(), folder);
  if (!opened) refuseWithError("The device's folder /var/" + std::string(folder) + " cannot be opened:");
  return opened;
}

}  // namespace

void requireProjectName(const std::string& name) {
  requireEntryName(name);
  if (name.starts_with('-') || name.find_first_of(" \"'\\`$&|;<>()*?[]{}!#~%=") != std::string::npos) {
    throw Refusal("\"" + name +
                  "\" is no name for a project, since it goes into command lines as it is: rename the folder "
                  "without blanks and other characters that a shell minds.");
  }
}

Transferred importProject(const Transfer& transfer, const fs::path& source) {
  const std::string name = wholePath(source).filename();
  requireProjectName(name);
  transfer.host.assume();
  const Descriptor from = openHostFolder(source);
  requireOutside(from.get(), source, transfer.device);
  std::error_code error;
  if (isWithin(fs::weakly_canonical(transfer.device, error), pathOf(from.get()))) {
    throw Refusal(visible(source.string()) + " has the device in it; a copy of it would never end.");
  }
  transfer.inDevice.assume();
  makeFolderBeneath(transfer.var.get(), kProjects);
  const Descriptor projects = openProjects(transfer, kProjects);
  const Descriptor beside = openProjects(transfer, kBesideProjects);
  if (exists(projects.get(), name)) throw Refusal("There is a project " + name + " in the device already.");
  Unfinished copy(beside.get(), ".import-" + std::to_string(getpid()), transfer.inDevice);
  auto leftOut = copyTree({from.get(), transfer.host}, {copy.folder(), transfer.inDevice},
                          {CopiedLinks::All, 022, transfer.pause});
  copy.finish(projects.get(), name, 0755);
  return {name, std::move(leftOut)};
}

Transferred exportProject(const Transfer& transfer, const std::string& name, const fs::path& target) {
  requireEntryName(name);
  transfer.inDevice.assume();
  const Descriptor from = openFolderBeneath(transfer.var.get(), fs::path(kProjects) / name);
  if (!from && errno == ENOENT) throw Refusal("There is no project " + name + " in the device.");
  if (!from) refuseWithError("The project " + name + " cannot be opened:");
  transfer.host.assume();
  std::error_code error;
  const bool isFolder = fs::is_directory(target, error);
  const fs::path whole = wholePath(target);
  const fs::path parent = isFolder ? target : whole.parent_path();
  const std::string copyName = isFolder ? name : whole.filename().string();
  requireEntryName(copyName);
  const Descriptor into = openHostFolder(parent);
  requireOutside(into.get(), parent, transfer.device);
  if (exists(into.get(), copyName))
    throw Refusal(visible((parent / copyName).string()) + " is there already.");
  Unfinished copy(into.get(), "." + copyName + ".export-" + std::to_string(getpid()), transfer.host);
  auto leftOut = copyTree({from.get(), transfer.inDevice}, {copy.folder(), transfer.host},
                          {CopiedLinks::Inside, transfer.umask, transfer.pause});
  copy.finish(into.get(), copyName, 0777 & ~transfer.umask);
  return {(pathOf(into.get()) / copyName).string(), std::move(leftOut)};
}

}  // namespace device
