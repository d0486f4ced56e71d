#include "device/Refusal.h"
#include "device/Visible.h"
#include "device/folder/Beneath.h"
#include "device/transfer/Transfer.h"

#include <algorithm>
#include <cstddef>
#include <fcntl.h>

namespace {

// Two descriptors each, within what a process may open.
constexpr int deepestCopied = 256;
constexpr std::size_t copiedAtOnce = 1 << 20;

class Copy {
 public:
  Copy(const CopyEnd& source, const CopyEnd& target, const CopyRules& rules)
      : reader_(source.rights), writer_(target.rights), rules_(rules), piece_(copiedAtOnce) {}

  std::vector<std::string> leftOut;

  void folder(int source, int target, const fs::path& at, int depth) {
    if (depth > deepestCopied) throw Refusal("The folder " + name(at) + " is nested too deeply.");
    reader_.assume();
    const auto names = namesIn(source);
    if (!names) fail(at, "could not be read:");
    for (const auto& each : *names) {
      if (rules_.pause) rules_.pause();
      entry(source, target, each, at / each, depth);
    }
  }

 private:
  static std::string name(const fs::path& at) { return at.empty() ? "itself" : visible(at.string()); }
  [[noreturn]] static void fail(const fs::path& at, const std::string& what) {
    refuseWithError("The entry " + name(at) + " " + what);
  }

  void entry(int source, int target, const std::string& entry, const fs::path& at, int depth) {
    reader_.assume();
    const struct stat status = statusOf(source, entry);
    if (status.st_mode == 0) fail(at, "could not be read:");
    switch (status.st_mode & S_IFMT) {
      case S_IFDIR: {
        const Descriptor from = openFolderBeneath(source, entry);
        const bool isLeftOut = rules_.unreadable == CopyRules::Unreadable::LeftOut;
        if (isLeftOut && (!from || depth >= deepestCopied)) return leftOut.push_back(name(at));
        if (!from) fail(at, "could not be read:");
        writer_.assume();
        // Closed to others until it is whole.
        if (mkdirat(target, entry.c_str(), 0700) != 0) fail(at, "could not be written:");
        const Descriptor to = openFolderBeneath(target, entry);
        if (!to) fail(at, "could not be written:");
        folder(from.get(), to.get(), at, depth + 1);
        writer_.assume();
        return finish(to.get(), 0777, status, at);
      }
      case S_IFREG:
        return file(source, target, entry, at);
      case S_IFLNK:
        return link(source, target, entry, at, depth);
      default:
        leftOut.push_back(name(at));
    }
  }

  void finish(int made, mode_t mode, const struct stat& like, const fs::path& at) const {
    const timespec times[2] = {like.st_atim, like.st_mtim};
    if (fchmod(made, mode & ~rules_.umask) != 0 || futimens(made, times) != 0)
      fail(at, "could not be written:");
  }

  void file(int source, int target, const std::string& entry, const fs::path& at) {
    // What was a file a moment ago may be a pipe now.
    const Descriptor from = openBeneath(source, entry, O_RDONLY | O_NONBLOCK);
    if (!from && rules_.unreadable == CopyRules::Unreadable::LeftOut) return leftOut.push_back(name(at));
    if (!from) fail(at, "could not be read:");
    const struct stat status = statusOf(from.get());
    if (!S_ISREG(status.st_mode)) throw Refusal("The entry " + name(at) + " changed while it was copied.");
    writer_.assume();
    const Descriptor to(
        openat(target, entry.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!to) fail(at, "could not be written:");
    contents(from.get(), to.get(), status.st_size, at);
    finish(to.get(), (status.st_mode & S_IXUSR) != 0 ? 0777 : 0666, status, at);
  }

  // No more than the file had at the start, since it may grow for ever; holes stay holes, since they may be
  // larger than any disk.
  void contents(int from, int to, off_t size, const fs::path& at) {
    for (off_t done = 0; done < size;) {
      off_t start = lseek(from, done, SEEK_DATA);
      if (start < 0 && errno == ENXIO) break;
      // A file system that knows no holes has data everywhere.
      start = std::max(start, done);
      const off_t hole = lseek(from, start, SEEK_HOLE);
      const off_t end = hole < 0 ? size : std::min(hole, size);
      while (start < end) {
        if (rules_.pause) rules_.pause();
        const auto wanted = static_cast<std::size_t>(std::min<off_t>(end - start, copiedAtOnce));
        const ssize_t got = pread(from, piece_.data(), wanted, start);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) fail(at, "could not be read:");
        if (got == 0) throw Refusal("The entry " + name(at) + " changed while it was copied.");
        if (!writeAt(to, {piece_.data(), static_cast<std::size_t>(got)}, start))
          fail(at, "could not be written:");
        start += got;
      }
      done = std::max(end, start);
    }
    if (ftruncate(to, size) != 0) fail(at, "could not be written:");
  }

  void link(int source, int target, const std::string& entry, const fs::path& at, int depth) {
    const auto leadsTo = linkTarget(source, entry);
    if (!leadsTo) fail(at, "could not be read:");
    if (rules_.links == CopiedLinks::Inside && !staysInside(*leadsTo, depth))
      return leftOut.push_back(name(at));
    writer_.assume();
    if (symlinkat(leadsTo->c_str(), target, entry.c_str()) != 0) fail(at, "could not be written:");
  }

  const Rights& reader_;
  const Rights& writer_;
  const CopyRules& rules_;
  std::vector<char> piece_;
};

}  // namespace

std::vector<std::string> copyTree(const CopyEnd& source, const CopyEnd& target, const CopyRules& rules) {
  Copy copy(source, target, rules);
  copy.folder(source.folder, target.folder, {}, 0);
  return std::move(copy.leftOut);
}

bool staysInside(const std::string& target, int depth) {
  const fs::path path = target;
  if (target.empty() || path.is_absolute()) return false;
  bool descends = false;
  for (const auto& part : path) {
    if (part.empty() || part == ".") continue;
    if (part != "..") {
      descends = true;
    } else if (descends || --depth < 0) {
      return false;
    }
  }
  return true;
}
