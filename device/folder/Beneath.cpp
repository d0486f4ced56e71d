#include "device/folder/Beneath.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <memory>
#include <sys/syscall.h>

#include <climits>

Descriptor openBeneath(int folder, const fs::path& path, int flags) {
  open_how how{};
  how.flags = static_cast<unsigned>(flags | O_CLOEXEC | O_NOFOLLOW);
  how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS;
  return Descriptor(static_cast<int>(syscall(SYS_openat2, folder, path.c_str(), &how, sizeof how)));
}

Descriptor openFolderBeneath(int folder, const fs::path& path) {
  return openBeneath(folder, path, O_RDONLY | O_DIRECTORY);
}

Descriptor makeFolderBeneath(int folder, const fs::path& path) {
  Descriptor opened = openFolderBeneath(folder, ".");
  for (const auto& part : path) {
    if (!opened) break;
    if (part.empty()) continue;  // behind a slash at the end
    mkdirat(opened.get(), part.c_str(), 0755);
    opened = openFolderBeneath(opened.get(), part);
  }
  return opened;
}

struct stat statusOf(int descriptor) {
  struct stat status {};
  fstat(descriptor, &status);
  return status;
}

struct stat statusOf(int folder, const std::string& name) {
  struct stat status {};
  fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW);
  return status;
}

bool exists(int folder, const std::string& name) {
  return statusOf(folder, name).st_mode != 0;
}

Descriptor openPlainFile(int folder, const fs::path& path) {
  // A pipe must not stop the launcher.
  Descriptor file = openBeneath(folder, path, O_RDONLY | O_NONBLOCK);
  if (file && !S_ISREG(statusOf(file.get()).st_mode)) file.close();
  return file;
}

std::optional<std::string> readBeneath(int folder, const fs::path& path, std::size_t limit, LongFile longer) {
  const Descriptor file = openPlainFile(folder, path);
  if (!file) return std::nullopt;
  const auto size = static_cast<std::size_t>(statusOf(file.get()).st_size);
  if (size > limit && longer == LongFile::Absent) return std::nullopt;
  std::string content(std::min(size, limit), '\0');
  std::size_t done = 0;
  while (done < content.size()) {
    const auto place = static_cast<off_t>(size - content.size() + done);
    const ssize_t got = pread(file.get(), content.data() + done, content.size() - done, place);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    // Cut short while it was read.
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  content.resize(done);
  return content;
}

std::optional<std::string> linkTarget(int folder, const std::string& name) {
  std::string target(PATH_MAX, '\0');
  const ssize_t size = readlinkat(folder, name.c_str(), target.data(), target.size());
  if (size < 0) return std::nullopt;
  target.resize(static_cast<std::size_t>(size));
  return target;
}

bool writeAt(int file, std::string_view content, off_t place) {
  while (!content.empty()) {
    const ssize_t written = pwrite(file, content.data(), content.size(), place);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    content.remove_prefix(static_cast<std::size_t>(written));
    place += written;
  }
  return true;
}

bool writeAtomically(int folder, const std::string& name, const std::string& content, mode_t mode) {
  const std::string temporary = name + ".new-" + std::to_string(getpid());
  unlinkat(folder, temporary.c_str(), 0);
  Descriptor file(
      openat(folder, temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
  if (!file) return false;
  if (writeAt(file.get(), content, 0) && fsync(file.get()) == 0 &&
      renameat(folder, temporary.c_str(), folder, name.c_str()) == 0) {
    return true;
  }
  const int error = errno;
  unlinkat(folder, temporary.c_str(), 0);
  errno = error;
  return false;
}

bool renameToNew(int folder, const std::string& name, int newFolder, const std::string& newName) {
  if (renameat2(folder, name.c_str(), newFolder, newName.c_str(), RENAME_NOREPLACE) == 0) return true;
  // Some file systems know the plain step only, which replaces nothing but files and empty folders.
  if (errno != EINVAL && errno != ENOSYS) return false;
  if (exists(newFolder, newName)) {
    errno = EEXIST;
    return false;
  }
  return renameat(folder, name.c_str(), newFolder, newName.c_str()) == 0;
}

std::optional<std::vector<std::string>> namesIn(int folder, std::size_t most) {
  const int copy = openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(copy < 0 ? nullptr : fdopendir(copy), closedir);
  if (!stream) return std::nullopt;
  std::vector<std::string> names;
  errno = 0;
  while (const dirent* entry = readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    if (names.size() == most) {
      errno = E2BIG;
      return std::nullopt;
    }
    names.emplace_back(name);
    errno = 0;
  }
  if (errno != 0) return std::nullopt;
  return names;
}

std::vector<std::string> namesInOrNone(int folder) {
  return namesIn(folder).value_or(std::vector<std::string>());
}
