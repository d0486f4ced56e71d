#include "device/ShownFolders.h"

#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace device {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMost = 32;

}  // namespace

ShownFolders::~ShownFolders() {
  for (const auto& shown : shown_) forget(shown);
  if (!place_.empty()) rmdir(place_.c_str());
}

fs::path ShownFolders::show(Descriptor folder, const std::string& name) {
  struct stat status {};
  if (fstat(folder.get(), &status) != 0) return {};
  for (const auto& shown : shown_) {
    if (shown.device == status.st_dev && shown.number == status.st_ino && shown.path.filename() == name)
      return shown.path;
  }
  if (place_.empty()) {
    std::string made = "/tmp/tweakbench-folders-XXXXXX";
    if (mkdtemp(made.data()) == nullptr) return {};
    place_ = made;
  }
  if (shown_.size() == kMost) {
    forget(shown_.front());
    shown_.pop_front();
  }
  // Two folders may have the same name.
  const fs::path own = place_ / std::to_string(++count_);
  fs::path path = own / name;
  const std::string open = "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(folder.get());
  if (mkdir(own.c_str(), 0700) != 0 || symlink(open.c_str(), path.c_str()) != 0) {
    rmdir(own.c_str());
    return {};
  }
  shown_.push_back({std::move(folder), status.st_dev, status.st_ino, path});
  return path;
}

void ShownFolders::forget(const Shown& shown) {
  unlink(shown.path.c_str());
  rmdir(shown.path.parent_path().c_str());
}

}  // namespace device
