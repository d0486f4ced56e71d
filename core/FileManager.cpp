#include "core/FileManager.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <memory>

namespace {

namespace filesystem = std::filesystem;

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return number_; }
  explicit operator bool() const { return number_ != -1; }
  bool close() {
    const int closing = number_;
    number_ = -1;
    return closing != -1 && ::close(closing) == 0;
  }

 private:
  int number_;
};

bool writeWhole(int file, std::string_view contents) {
  while (!contents.empty()) {
    const ssize_t written = write(file, contents.data(), contents.size());
    if (written == -1 && errno == EINTR) continue;
    if (written <= 0) return false;
    contents.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// Where a write to `path` really goes: a link's target when there is one, so that the link itself stays.
std::string resolved(const std::string& path) {
  struct stat information {};
  if (lstat(path.c_str(), &information) != 0 || !S_ISLNK(information.st_mode)) return path;
  const std::unique_ptr<char, decltype(&std::free)> target(realpath(path.c_str(), nullptr), std::free);
  return target ? target.get() : path;
}

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

bool makeTemporary(int file, const std::string& target, std::string_view contents, Durability durability) {
  struct stat existing {};
  if (stat(target.c_str(), &existing) == 0) {
    if (!S_ISREG(existing.st_mode) || fchmod(file, existing.st_mode & 07777) != 0) return false;
  }
  return writeWhole(file, contents) && (durability == Durability::Deferred || fsync(file) == 0);
}

}  // namespace

bool fileExistsAtPath(const std::string& path) {
  struct stat information {};
  return stat(path.c_str(), &information) == 0;
}

void removeItemAtPath(const std::string& path) {
  std::error_code ignored;
  filesystem::remove_all(path, ignored);
}

std::optional<std::vector<std::string>> contentsOfDirectoryAtPath(const std::string& path) {
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(path.c_str()), closedir);
  if (!folder) return std::nullopt;
  std::vector<std::string> names;
  while (const dirent* entry = readdir(folder.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  return names;
}

void createDirectoryAtPath(const std::string& path) {
  std::error_code ignored;
  filesystem::create_directories(path, ignored);
}

MaybeText contentsOfFile(const std::string& path, std::size_t limit) {
  // O_NONBLOCK: opening a FIFO for reading would wait for a writer that may never come.
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat information {};
  if (!file || fstat(file.number(), &information) != 0 || !S_ISREG(information.st_mode)) return std::nullopt;
  if (static_cast<std::size_t>(information.st_size) > limit) return std::nullopt;
  // The size is a hint: the file may still grow, or may lie in a file system that reports none.
  std::string contents(static_cast<std::size_t>(information.st_size) + 1, '\0');
  std::size_t size = 0;
  for (;;) {
    const ssize_t got = read(file.number(), contents.data() + size, contents.size() - size);
    if (got == -1 && errno == EINTR) continue;
    if (got == -1) return std::nullopt;
    if (got == 0) break;
    size += static_cast<std::size_t>(got);
    if (size > limit) return std::nullopt;
    if (size == contents.size()) contents.resize(size + size / 2 + 4096);
  }
  contents.resize(size);
  return contents;
}

MaybeText stringWithContentsOfFile(const std::string& path, std::size_t limit) {
  MaybeText contents = contentsOfFile(path, limit);
  if (contents && !isValidUTF8(*contents)) return std::nullopt;
  return contents;
}

bool writeToFileAtomically(const std::string& path, std::string_view contents, Durability durability) {
  const std::string target = resolved(path);
  const std::string folder = folderOf(target);
  // A short name of its own: the target's name may already be as long as a name can be.
  std::string temporary = folder + "/.tweakbench-XXXXXX";
  const Descriptor made(mkostemp(temporary.data(), O_CLOEXEC));
  if (!made) return false;
  if (fchmod(made.number(), 0644) != 0 || !makeTemporary(made.number(), target, contents, durability) ||
      rename(temporary.c_str(), target.c_str()) != 0) {
    unlink(temporary.c_str());
    return false;
  }
  if (durability == Durability::Durable) {
    const Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened) fsync(opened.number());
  }
  return true;
}
