#include "device/folder/HistoryChanges.h"

#include "device/folder/Beneath.h"
#include "device/folder/HistoryWalk.h"

#include <fcntl.h>
#include <set>
#include <sys/stat.h>

#include <climits>

namespace device {
namespace {

constexpr int kDeepest = 200;

std::string linkTarget(int folder, const std::string& name) {
  std::string target(PATH_MAX, '\0');
  const ssize_t size = readlinkat(folder, name.c_str(), target.data(), target.size());
  target.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
  return target;
}

// Absent, or one that is not kept, has no type.
struct stat look(int folder, const std::string& name) {
  struct stat status {};
  if (fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return {};
  const struct stat nothing {};
  const bool isKept =
      (S_ISREG(status.st_mode) && static_cast<std::uint64_t>(status.st_size) <= largestFileKept) ||
      S_ISLNK(status.st_mode) || (S_ISDIR(status.st_mode) && name != folderLeftOut);
  return isKept ? status : nothing;
}

class Comparison {
 public:
  explicit Comparison(std::size_t limit) : limit_(limit) {}

  std::vector<std::string> found;

  void folders(int older, int newer, const std::string& path, int depth) {
    std::set<std::string> names;
    for (int folder : {older, newer}) {
      const auto inIt = namesIn(folder).value_or(std::vector<std::string>());
      names.insert(inIt.begin(), inIt.end());
    }
    for (const auto& name : names) {
      if (found.size() >= limit_) return;
      entries(older, newer, name, path + name, depth);
    }
  }

 private:
  void entries(int older, int newer, const std::string& name, const std::string& path, int depth) {
    const struct stat before = look(older, name);
    const struct stat after = look(newer, name);
    if ((before.st_mode & S_IFMT) != (after.st_mode & S_IFMT)) return found.push_back(path);
    switch (before.st_mode & S_IFMT) {
      case S_IFREG:
        if (before.st_ino != after.st_ino &&
            (before.st_size != after.st_size || before.st_mtim.tv_sec != after.st_mtim.tv_sec ||
             before.st_mtim.tv_nsec != after.st_mtim.tv_nsec)) {
          found.push_back(path);
        }
        return;
      case S_IFLNK:
        if (linkTarget(older, name) != linkTarget(newer, name)) found.push_back(path);
        return;
      case S_IFDIR: {
        const Descriptor olderInside = openFolderBeneath(older, name);
        const Descriptor newerInside = openFolderBeneath(newer, name);
        if (depth < kDeepest && olderInside && newerInside)
          folders(olderInside.get(), newerInside.get(), path + "/", depth + 1);
        return;
      }
      default:
        return;
    }
  }

  std::size_t limit_;
};

}  // namespace

std::vector<std::string> differences(int older, int newer, std::size_t limit) {
  Comparison comparison(limit);
  comparison.folders(older, newer, {}, 0);
  return std::move(comparison.found);
}

}  // namespace device
