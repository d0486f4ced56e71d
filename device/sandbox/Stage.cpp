#include "device/sandbox/Stage.h"

#include "device/Refusal.h"

#include <algorithm>
#include <fcntl.h>
#include <fstream>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

// Every system has this folder, and what is mounted over it is seen by this process and its children only.
constexpr const char* stageFolder = "/mnt";

// What others must be allowed, as far as the owner may do it.
fs::perms neededFor(const fs::path& path) {
  const auto status = fs::symlink_status(path);
  if (fs::is_symlink(status)) return fs::perms::none;
  const bool runs =
      fs::is_directory(status) || (status.permissions() & fs::perms::owner_exec) != fs::perms::none;
  return fs::perms::others_read | (runs ? fs::perms::others_exec : fs::perms::none);
}

bool isOpen(const fs::path& path) {
  return (fs::symlink_status(path).permissions() & neededFor(path)) == neededFor(path);
}

bool isOpenThroughout(const fs::path& path) {
  if (!isOpen(path)) return false;
  if (!fs::is_directory(fs::symlink_status(path))) return true;
  const auto entries = fs::recursive_directory_iterator(path);
  return std::all_of(begin(entries), end(entries), [](const auto& entry) { return isOpen(entry.path()); });
}

void openUp(const fs::path& path) {
  if (!isOpen(path)) fs::permissions(path, neededFor(path), fs::perm_options::add);
}

void copyReadable(const fs::path& source, const fs::path& target) {
  fs::copy(source, target, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
  openUp(target);
  if (!fs::is_directory(fs::symlink_status(target))) return;
  for (const auto& entry : fs::recursive_directory_iterator(target)) openUp(entry.path());
}

}  // namespace

Stage::Stage() {
  if (unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_SLAVE, nullptr) != 0) {
    refuseWithError("Root could not make a mount namespace to show the device's user its files:");
  }
}

void Stage::addEntry(const fs::path& source, const fs::path& target) {
  // Opened before the stage covers what it is mounted on.
  Descriptor opened(open(source.c_str(), O_PATH | O_CLOEXEC));
  if (!opened) refuseWithError(source.string() + " could not be opened:");
  struct stat status {};
  fstat(opened.get(), &status);
  entries_.push_back({std::move(opened), target, {}, S_ISDIR(status.st_mode)});
}

fs::path Stage::add(const fs::path& source, const std::string& name) {
  fs::path target = fs::path(stageFolder) / name;
  addEntry(source, target);
  return target;
}

fs::path Stage::addReadable(const fs::path& source, const std::string& name) {
  if (isOpenThroughout(source)) return add(source, name);
  fs::path target = fs::path(stageFolder) / name;
  for (const auto& entry : fs::directory_iterator(source)) {
    const fs::path shown = target / entry.path().filename();
    if (isOpenThroughout(entry.path())) {
      addEntry(entry.path(), shown);
    } else {
      entries_.push_back({Descriptor(), shown, entry.path(), false});
    }
  }
  return target;
}

void Stage::mount() {
  if (::mount("tweakbench", stageFolder, "tmpfs", MS_NOSUID | MS_NODEV, "mode=0755") != 0) {
    refuseWithError("Root could not show the device's user its files:");
  }
  for (const auto& entry : entries_) {
    fs::create_directories(entry.target.parent_path());
    if (!entry.copied.empty()) {
      copyReadable(entry.copied, entry.target);
      continue;
    }
    if (entry.isFolder) {
      fs::create_directory(entry.target);
    } else {
      std::ofstream{entry.target};
    }
    const std::string source = "/proc/self/fd/" + std::to_string(entry.source.get());
    if (::mount(source.c_str(), entry.target.c_str(), nullptr, MS_BIND | MS_REC, nullptr) != 0) {
      refuseWithError(entry.target.filename().string() + " could not be shown to the device's user:");
    }
  }
  entries_.clear();
}
