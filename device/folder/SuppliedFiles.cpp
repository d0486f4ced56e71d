#include "device/Refusal.h"
#include "device/folder/Beneath.h"
#include "device/folder/DeviceFolder.h"

#include <cstring>
#include <fcntl.h>

namespace {

// Where the device sees the host's programs, to which the links point.
const std::string hostPrograms = "/.host/usr/bin/";

// Far above what is shipped; a file of the device may be anything.
constexpr std::size_t largestShipped = 64 << 20;

// A build may have filled the disk or put a folder in the way; the start goes on.
bool put(int folder, const std::string& name, const std::string& content, mode_t mode) {
  if (writeAtomically(folder, name, content, mode)) return true;
  say("The file " + name + " could not be put into the device: " + std::strerror(errno) + ".");
  return false;
}

bool replaceBy(int folder, const std::string& name, const std::string& target, const SetAside& setAside) {
  if (symlinkat(target.c_str(), folder, name.c_str()) == 0) return true;
  // A folder: whose it is, and what is in it, is the user's business.
  if (errno == EEXIST && unlinkat(folder, name.c_str(), 0) != 0) setAside(name);
  return symlinkat(target.c_str(), folder, name.c_str()) == 0;
}

}  // namespace

void shipFiles(const fs::path& source, int application, int programs, int record, bool isNew) {
  const Descriptor shipped(open(source.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const auto names = namesIn(shipped.get());
  if (!names) refuseWithError("Tweakbench's own folder " + source.string() + " could not be read:");
  for (const auto& name : *names) {
    struct stat status {};
    fstatat(shipped.get(), name.c_str(), &status, 0);
    // The record has the time of what it was made from, so that a start does not read it all.
    if (!isNew && looksSame(statusOf(record, name), status)) continue;
    const auto now = readBeneath(shipped.get(), name, largestShipped);
    if (!now) refuseWithError("Tweakbench's own file " + (source / name).string() + " could not be read:");
    const auto before = readBeneath(record, name, largestShipped);
    const auto isOutdated = [&](int folder) {
      return before && *before != *now && readBeneath(folder, name, largestShipped) == before;
    };
    const mode_t mode = (status.st_mode & S_IXUSR) != 0 ? 0755 : 0644;
    const bool isMissing = isNew || (!before && !exists(application, name));
    if ((isMissing || isOutdated(application)) && !put(application, name, *now, mode)) continue;
    if (name == converter && isOutdated(programs) && !put(programs, name, *now, mode)) continue;
    // Last, so that a start that is killed before does it all again.
    if (before != now && !writeAtomically(record, name, *now, 0644)) continue;
    const timespec times[] = {status.st_mtim, status.st_mtim};
    utimensat(record, name.c_str(), times, 0);
  }
}

std::map<std::string, std::string> hostProgramLinks(const fs::path& programs) {
  std::map<std::string, std::string> links;
  for (const auto& entry : fs::directory_iterator(programs)) {
    const std::string name = entry.path().filename();
    links.emplace(name, hostPrograms + name);
  }
  links["sh"] = "/.host/tweakbench/guard";
  return links;
}

std::size_t putLinks(int folder, const std::map<std::string, std::string>& links, const SetAside& setAside) {
  const auto present = namesIn(folder);
  if (!present) refuseWithError("The device's folder of programs could not be read:");
  auto missing = links;
  for (const auto& name : *present) {
    const auto wanted = links.find(name);
    const auto target = linkTarget(folder, name);
    if (wanted != links.end()) {
      if (target == wanted->second) missing.erase(name);
    } else if (target && target->starts_with(hostPrograms)) {
      unlinkat(folder, name.c_str(), 0);
    }
  }
  std::size_t failed = 0;
  for (const auto& [name, target] : missing) {
    if (!replaceBy(folder, name, target, setAside)) ++failed;
  }
  return failed;
}

void putLibraryLinks(int folder, const fs::path& libraries, const std::string& shown) {
  for (const auto& name : namesInOrNone(folder)) {
    std::error_code error;
    const bool isGone = fs::symlink_status(libraries / name, error).type() == fs::file_type::not_found;
    if (isGone && linkTarget(folder, name) == (fs::path(shown) / name).string())
      unlinkat(folder, name.c_str(), 0);
  }
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(libraries, error)) {
    const std::string name = entry.path().filename();
    const std::string path = fs::path(shown) / name;
    const bool isFolder = entry.symlink_status(error).type() == fs::file_type::directory;
    if (!isFolder || entry.path().extension() == ".framework") {
      symlinkat(path.c_str(), folder, name.c_str());
      continue;
    }
    // Such as iphone/rootless, with the libraries of a package scheme.
    mkdirat(folder, name.c_str(), 0755);
    if (const Descriptor inner = openFolderBeneath(folder, name))
      putLibraryLinks(inner.get(), entry.path(), path);
  }
}
