#include "device/folder/Packages.h"

#include "device/Refusal.h"
#include "device/Visible.h"
#include "device/folder/Beneath.h"

#include <algorithm>

namespace {

// Kept short of what a file name may have, for the rest of a temporary name.
constexpr std::size_t longestName = 200;

}  // namespace

std::vector<Package> packagesOf(int var, const std::string& project) {
  std::vector<Package> found;
  for (const fs::path& place :
       {fs::path(packagesFolder) / project, fs::path(projectsFolder) / project / ownPackages}) {
    const Descriptor folder = openFolderBeneath(var, place);
    auto names = namesInOrNone(folder.get());
    std::sort(names.begin(), names.end());
    for (const auto& name : names) {
      const struct stat status = statusOf(folder.get(), name);
      if (!name.ends_with(".deb") || visible(name) != name || !S_ISREG(status.st_mode)) continue;
      found.push_back(
          {place / name, status.st_ino, nanoseconds(status.st_ctim), nanoseconds(status.st_mtim)});
    }
  }
  return found;
}

Descriptor openNewestPackage(int var, const std::string& project, std::string& name) {
  const auto packages = packagesOf(var, project);
  const auto newest = std::max_element(
      packages.begin(), packages.end(),
      [](const Package& one, const Package& other) { return one.modified < other.modified; });
  if (newest == packages.end()) return {};
  name = newest->path.filename().string();
  return openPlainFile(var, newest->path);
}

Descriptor openProject(int var, const std::string& project) {
  requireEntryName(project);
  Descriptor folder = openFolderBeneath(var, fs::path(projectsFolder) / project);
  if (!folder && errno == ENOENT) throw Refusal("There is no project " + project + " in the device.");
  if (!folder) refuseWithError("The project " + project + " cannot be opened:");
  return folder;
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
  if (name.empty() || name == "." || name == ".." || hasControls(name) ||
      name.find('/') != std::string::npos || name.size() > longestName) {
    throw Refusal("\"" + visible(name) + "\" is not a project's name.");
  }
}
