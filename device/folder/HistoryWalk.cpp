#include "device/folder/HistoryWalk.h"

#include "device/Visible.h"
#include "device/folder/Beneath.h"

#include <algorithm>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <unordered_map>

namespace device {
namespace {

constexpr std::size_t kMostRemarks = 20;
// Two bounds on what a build can make one walk cost. Each level takes one descriptor.
constexpr std::size_t kMostVisited = 3 * mostEntriesKept;
constexpr int kDeepest = 200;
constexpr std::size_t kFlood = 10'000;
constexpr std::size_t kLongestPath = 4000;
constexpr std::size_t kLargestState = std::size_t{64} << 20;
constexpr std::uint64_t kBlock = 4096;

struct Facts {
  std::uint64_t inode;
  std::uint64_t size;
  std::int64_t modified;
  std::int64_t changed;
  std::uint64_t mode;
};

std::int64_t nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

// A state is a row of paths, each with a NUL and the facts behind it.
std::unordered_map<std::string_view, Facts> factsOf(std::string_view state) {
  std::unordered_map<std::string_view, Facts> facts;
  while (!state.empty()) {
    const std::size_t size = state.find('\0');
    if (size == std::string_view::npos || state.size() < size + 1 + sizeof(Facts)) return {};
    std::memcpy(&facts[state.substr(0, size)], state.data() + size + 1, sizeof(Facts));
    state.remove_prefix(size + 1 + sizeof(Facts));
  }
  return facts;
}

std::uint64_t spaceOf(const Facts& facts) {
  return S_ISREG(facts.mode) ? (facts.size + kBlock - 1) / kBlock * kBlock : kBlock;
}

class Walker {
 public:
  explicit Walker(const LastCopy& last) : last_(factsOf(last.state)), leftOut_(last.leftOut) {
    for (const auto& [path, facts] : last_) {
      const std::size_t end = path.find('/', path.find('/') + 1);
      if (leftOut_.empty() || !leftOut_.contains(std::string(path.substr(0, end))))
        result.oldBytes += spaceOf(facts);
    }
  }

  Walk result;

  void folder(int folder, const std::string& name) {
    struct stat status {};
    if (fstat(folder, &status) == 0) note(name, status);
    auto names = namesIn(folder);
    if (!names) return cut(name + " has too many entries, or cannot be read.");
    std::sort(names->begin(), names->end());
    // What is known already goes before what a build may have made without end.
    if (names->size() > kFlood) {
      std::stable_partition(names->begin(), names->end(),
                            [&](const auto& each) { return last_.contains(name + "/" + each); });
    }
    for (const auto& each : *names) {
      const std::string path = name + "/" + each;
      if (visited_ >= kMostVisited || result.state.size() >= 3 * kLargestState)
        return cut(visible(path) + " and others are too many.");
      start_ = result.state.size();
      wasLeftOut_ = leftOut_.contains(path);
      result.items.push_back({path, 0, 0});
      entry(folder, each.c_str(), path, 0);
      if (!isTooMuch()) continue;
      cut(visible(path) + " has too many entries.");
      result.state.resize(start_);
      result.items.pop_back();
    }
  }

 private:
  void remark(const std::string& sentence) {
    if (result.remarks.size() < kMostRemarks) result.remarks.push_back(sentence);
    if (result.remarks.size() == kMostRemarks) result.remarks.push_back("And more.");
  }
  void cut(const std::string& sentence) {
    remark(sentence);
    result.isWhole = false;
  }

  bool isTooMuch() const {
    return result.items.back().entries >= mostEntriesKept || result.state.size() - start_ >= kLargestState;
  }

  Facts note(const std::string& path, const struct stat& status) {
    const Facts facts{status.st_ino, static_cast<std::uint64_t>(status.st_size), nanoseconds(status.st_mtim),
                      nanoseconds(status.st_ctim), status.st_mode};
    result.state.append(path).push_back('\0');
    result.state.append(reinterpret_cast<const char*>(&facts), sizeof facts);
    return facts;
  }

  void entry(int parent, const char* name, const std::string& path, int depth) {
    struct stat status {};
    WalkedItem& item = result.items.back();
    ++visited_;
    ++item.entries;
    if (isTooMuch() || fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return;
    if (S_ISREG(status.st_mode) && static_cast<std::uint64_t>(status.st_size) > largestFileKept)
      return remark(visible(path) + " has more than 64 MiB.");
    const Facts facts = note(path, status);
    const auto known = last_.find(path);
    const bool isSame = !wasLeftOut_ && known != last_.end() && known->second.size == facts.size &&
                        known->second.modified == facts.modified && known->second.mode == facts.mode;
    if (S_ISREG(status.st_mode) && isSame &&
        (known->second.changed != facts.changed || known->second.inode != facts.inode)) {
      result.hasDisguisedChange = true;
    }
    if (!S_ISREG(status.st_mode) || !isSame) item.newBytes += spaceOf(facts);
    if (S_ISDIR(status.st_mode)) inside(parent, name, path, depth);
    if (!S_ISDIR(status.st_mode) && !S_ISREG(status.st_mode) && !S_ISLNK(status.st_mode))
      remark(visible(path) + " is no file, folder or link.");
  }

  void inside(int parent, const char* name, const std::string& path, int depth) {
    if (depth >= kDeepest || path.size() > kLongestPath)
      return cut(visible(path.substr(0, 100)) + "… lies too deep.");
    const int opened = openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (opened < 0) return;  // The copy may be able to read it.
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(fdopendir(opened), closedir);
    if (!stream) {
      close(opened);
      return;
    }
    while (const dirent* each = readdir(stream.get())) {
      const std::string_view inner = each->d_name;
      if (inner == "." || inner == "..") continue;
      if (inner == folderLeftOut && each->d_type == DT_DIR) continue;
      entry(opened, each->d_name, path + "/" + each->d_name, depth + 1);
      if (isTooMuch()) return;
    }
  }

  std::unordered_map<std::string_view, Facts> last_;
  const std::set<std::string>& leftOut_;
  std::size_t visited_ = 0;
  // Of the item that is looked at: where its state begins.
  std::size_t start_ = 0;
  bool wasLeftOut_ = false;
};

}  // namespace

KeptFolders openKept(int var) {
  KeptFolders folders;
  for (const Kept kind : allKept)
    folders[static_cast<std::size_t>(kind)] = openFolderBeneath(var, folderInDevice(kind));
  return folders;
}

Walk walk(const KeptFolders& folders, const LastCopy& last) {
  Walker walker(last);
  for (const Kept kind : allKept) {
    const Descriptor& folder = folders[static_cast<std::size_t>(kind)];
    if (folder) walker.folder(folder.get(), folderInHistory(kind));
  }
  // The mark of a walk, so that an empty device has a state, too.
  walker.result.state.append("\0", 1).append(sizeof(Facts), '\0');
  return std::move(walker.result);
}

}  // namespace device
