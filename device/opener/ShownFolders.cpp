#include "device/opener/ShownFolders.h"

#include "core/Text.h"
#include "device/folder/Beneath.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace device {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMost = 32;
constexpr std::string_view kPlaceName = "tweakbench-folders-";

// Letters of any script, and what no shell minds anywhere.
bool isPlain(const std::string& name) {
  return !name.empty() && name.front() != '-' && name.front() != '.' && isValidUTF8(name) &&
         std::all_of(name.begin(), name.end(), [](char character) {
           return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
                  (character >= '0' && character <= '9') || static_cast<unsigned char>(character) >= 0x80 ||
                  std::string_view("._+-@").find(character) != std::string_view::npos;
         });
}

// A place whose process has ended, so that nobody holds its lock. Nothing is deleted but links in its
// numbered folders and what is empty then.
void removeIfAbandoned(int temporary, const std::string& name) {
  const Descriptor place = openFolderBeneath(temporary, name);
  struct stat status {};
  if (!place || fstat(place.get(), &status) != 0 || status.st_uid != geteuid()) return;
  if (flock(place.get(), LOCK_EX | LOCK_NB) != 0) return;
  const auto numbered = namesIn(place.get());
  if (!numbered) return;
  for (const auto& number : *numbered) {
    const Descriptor inside = openFolderBeneath(place.get(), number);
    const auto links = inside ? namesIn(inside.get()) : std::nullopt;
    if (!links) continue;
    for (const auto& link : *links) {
      const bool isLink =
          fstatat(inside.get(), link.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode);
      if (isLink) unlinkat(inside.get(), link.c_str(), 0);
    }
    unlinkat(place.get(), number.c_str(), AT_REMOVEDIR);
  }
  unlinkat(temporary, name.c_str(), AT_REMOVEDIR);
}

}  // namespace

ShownFolders::ShownFolders(fs::path temporary) : temporary_(std::move(temporary)) {
  const Descriptor folder(open(temporary_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const auto names = folder ? namesIn(folder.get()) : std::nullopt;
  if (!names) return;
  for (const auto& name : *names) {
    if (name.starts_with(kPlaceName)) removeIfAbandoned(folder.get(), name);
  }
}

ShownFolders::~ShownFolders() {
  for (const auto& shown : shown_) forget(shown);
  if (!place_.empty()) rmdir(place_.c_str());
}

fs::path ShownFolders::show(Descriptor folder, const std::string& wished) {
  struct stat status {};
  if (fstat(folder.get(), &status) != 0) return {};
  const std::string name = isPlain(wished) ? wished : "folder";
  for (const auto& shown : shown_) {
    if (shown.device == status.st_dev && shown.number == status.st_ino && shown.path.filename() == name)
      return shown.path;
  }
  if (place_.empty() && !makePlace()) return {};
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

bool ShownFolders::makePlace() {
  std::string made = temporary_ / (std::string(kPlaceName) + "XXXXXX");
  if (mkdtemp(made.data()) == nullptr) return false;
  lock_ = Descriptor(open(made.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!lock_ || flock(lock_.get(), LOCK_EX | LOCK_NB) != 0) {
    rmdir(made.c_str());
    return false;
  }
  place_ = made;
  return true;
}

void ShownFolders::forget(const Shown& shown) {
  unlink(shown.path.c_str());
  rmdir(shown.path.parent_path().c_str());
}

}  // namespace device
