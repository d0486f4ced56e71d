#include "device/folder/Packages.h"

#include "core/Text.h"
#include "device/Refusal.h"
#include "device/Visible.h"
#include "device/folder/Beneath.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <tuple>

namespace {

namespace fs = std::filesystem;

// Kept short of what a file name may have, for the rest of a temporary name.
constexpr std::size_t longestName = 200;

}  // namespace

bool Package::isSameAs(const Package& other) const {
  return std::tie(number, changed.tv_sec, changed.tv_nsec) ==
         std::tie(other.number, other.changed.tv_sec, other.changed.tv_nsec);
}

std::vector<Package> packagesOf(int var, const std::string& project) {
  std::vector<Package> found;
  for (const fs::path& place :
       {fs::path(packagesFolder) / project, fs::path(projectsFolder) / project / ownPackages}) {
    const Descriptor folder = openFolderBeneath(var, place);
    auto names =
        folder ? namesIn(folder.get()).value_or(std::vector<std::string>()) : std::vector<std::string>();
    std::sort(names.begin(), names.end());
    for (const auto& name : names) {
      struct stat status {};
      if (!name.ends_with(".deb") || visible(name) != name ||
          fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 ||
          !S_ISREG(status.st_mode)) {
        continue;
      }
      found.push_back({place / name, status.st_ino, status.st_ctim, status.st_mtim});
    }
  }
  return found;
}

Descriptor openNewestPackage(int var, const std::string& project, std::string& name) {
  const auto packages = packagesOf(var, project);
  const auto newest =
      std::max_element(packages.begin(), packages.end(), [](const Package& one, const Package& other) {
        return std::tie(one.modified.tv_sec, one.modified.tv_nsec) <
               std::tie(other.modified.tv_sec, other.modified.tv_nsec);
      });
  if (newest == packages.end()) return {};
  name = newest->path.filename().string();
  // It may be a pipe by now, which must not block.
  Descriptor file = openBeneath(var, newest->path, O_RDONLY | O_NONBLOCK);
  struct stat status {};
  if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return file;
}

void requireProject(int var, const std::string& project) {
  requireEntryName(project);
  if (openFolderBeneath(var, fs::path(projectsFolder) / project)) return;
  if (errno == ENOENT) throw Refusal("There is no project " + project + " in the device.");
  refuseWithError("The project " + project + " cannot be opened:");
}

void requireProjectName(const std::string& name) {
  requireEntryName(name);
  if (!isValidUTF8(name)) throw Refusal("A project's name has to be UTF-8 text: rename the folder.");
  if (name.starts_with('-') || name.find_first_of(" \"'\\`$&|;<>()*?[]{}!#~%=") != std::string::npos) {
    throw Refusal(
        "\"" + name +
        "\" cannot be a project's name, since names go into command lines as they are: rename the folder "
        "to one without blanks, quotes and other special characters of the shell.");
  }
}

void requireEntryName(const std::string& name) {
  const bool hasControl = std::any_of(name.begin(), name.end(), [](char character) {
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7f;
  });
  if (name.empty() || name == "." || name == ".." || hasControl || name.find('/') != std::string::npos ||
      name.size() > longestName) {
    throw Refusal("\"" + visible(name) + "\" is not a project's name.");
  }
}
