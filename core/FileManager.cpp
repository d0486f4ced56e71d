#include "core/FileManager.h"

#include "core/LauncherContract.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

bool writeWhole(int file, std::string_view contents) {
  while (!contents.empty()) {
    const ssize_t written = write(file, contents.data(), contents.size());
    if (written == -1 && errno == EINTR) continue;
    if (written == -1) return false;
    contents.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// Where a write to `path` really goes: a link's target when there is one, so that the link itself stays.
std::string resolved(const std::string& path) {
  std::error_code error;
  if (!fs::is_symlink(path, error)) return path;
  const fs::path target = fs::canonical(path, error);
  return error ? path : target.string();
}

std::string folderOf(const std::string& path) {
  return fs::path(path).parent_path();
}

// The mode that the file at `path` has, or that a new one gets; absent when something else is there.
std::optional<mode_t> modeFor(const std::string& path) {
  struct stat existing {};
  if (stat(path.c_str(), &existing) != 0) return 0644;
  if (!S_ISREG(existing.st_mode)) return std::nullopt;
  return existing.st_mode & 07777;
}

}  // namespace

bool fileExistsAtPath(const std::string& path) {
  struct stat information {};
  return stat(path.c_str(), &information) == 0;
}

bool mayBeReadForEver(const std::string& path) {
  struct stat information {};
  return stat(path.c_str(), &information) == 0 &&
         (S_ISFIFO(information.st_mode) || S_ISCHR(information.st_mode));
}

void removeItemAtPath(const std::string& path) {
  std::error_code ignored;
  fs::remove_all(path, ignored);
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
  fs::create_directories(path, ignored);
}

void createFileAtPath(const std::string& path) {
  writeToFileAtomically(path, {}, Durability::Deferred);
}

Descriptor openRegularFile(const std::string& path) {
  // O_NONBLOCK: opening a FIFO for reading would wait for a writer that may never come.
  Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat information {};
  if (file && fstat(file.get(), &information) == 0 && S_ISREG(information.st_mode)) return file;
  return {};
}

std::optional<std::size_t> readSome(const Descriptor& file, char* buffer, std::size_t size) {
  for (;;) {
    const ssize_t got = read(file.get(), buffer, size);
    if (got >= 0) return static_cast<std::size_t>(got);
    if (errno != EINTR) return std::nullopt;
  }
}

std::size_t sizeOfFile(const std::string& path) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(path, error);
  return error ? 0 : size;
}

MaybeText contentsOfFile(const std::string& path, std::size_t limit) {
  const Descriptor file = openRegularFile(path);
  struct stat information {};
  if (!file || fstat(file.get(), &information) != 0) return std::nullopt;
  if (static_cast<std::size_t>(information.st_size) > limit) return std::nullopt;
  // The size is a hint: the file may still grow, or may be in a file system that reports none. Appending
  // avoids zeroing the buffer first.
  std::string contents;
  contents.reserve(static_cast<std::size_t>(information.st_size));
  std::array<char, std::size_t{64} << 10> buffer;
  for (;;) {
    const auto got = readSome(file, buffer.data(), buffer.size());
    if (!got || contents.size() + *got > limit) return std::nullopt;
    if (*got == 0) return contents;
    contents.append(buffer.data(), *got);
  }
}

MaybeText stringWithContentsOfFile(const std::string& path, std::size_t limit) {
  MaybeText contents = contentsOfFile(path, limit);
  if (contents && !isValidUTF8(*contents)) return std::nullopt;
  return contents;
}

AtomicFile::AtomicFile(const std::string& path) : target_(resolved(path)) {
  const auto mode = modeFor(target_);
  if (!mode) return;
  temporary_ = folderOf(target_) + "/" + std::string(temporaryNamePattern);
  file_ = Descriptor(mkostemp(temporary_.data(), O_CLOEXEC));
  if (file_ && fchmod(file_.get(), *mode) != 0) discard();
}

AtomicFile::~AtomicFile() {
  discard();
}

void AtomicFile::write(std::string_view contents) {
  if (file_ && !writeWhole(file_.get(), contents)) discard();
}

bool AtomicFile::commit(Durability durability) {
  if (!file_) return false;
  const bool durable = durability == Durability::Durable;
  if ((durable && fsync(file_.get()) != 0) || rename(temporary_.c_str(), target_.c_str()) != 0) {
    discard();
    return false;
  }
  file_.close();
  if (durable) {
    const Descriptor folder(open(folderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder) fsync(folder.get());
  }
  return true;
}

void AtomicFile::discard() {
  if (!file_) return;
  unlink(temporary_.c_str());
  file_.close();
}

bool writeToFileAtomically(const std::string& path, std::string_view contents, Durability durability) {
  AtomicFile file(path);
  file.write(contents);
  return file.commit(durability);
}
