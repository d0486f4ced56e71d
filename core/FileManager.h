// The file operations that the system makes itself, without a shell.
//
// Failures are silent unless a function returns something: absent, false, or nothing done. Paths are absolute
// UTF-8. A build may have planted files, so only regular files are read (links are followed and stay in the
// device), reading never waits on a FIFO, and it stops at a bound. Any
// thread.
#pragma once

#include "core/Descriptor.h"
#include "core/Text.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// True for a file, a folder or anything else that `path` leads to, links followed.
bool fileExistsAtPath(const std::string& path);

// Removes a file, a link (not what it leads to), or a folder with all that it holds. A missing item is no
// failure.
void removeItemAtPath(const std::string& path);

// The entry names of a folder as readdir gives them: not sorted, hidden ones and folders included, "." and
// ".." dropped. Absent when `path` is no folder that can be read.
std::optional<std::vector<std::string>> contentsOfDirectoryAtPath(const std::string& path);

// Makes the folder and those above it that are missing.
void createDirectoryAtPath(const std::string& path);

// Makes an empty file, or empties the one that is there.
void createFileAtPath(const std::string& path);

// The largest text that is read whole, in bytes.
inline constexpr std::size_t largestTextFile = std::size_t{1} << 30;

// The size of a regular file in bytes; 0 when there is none.
std::size_t sizeOfFile(const std::string& path);

// The bytes of a regular file; absent when it is missing, no regular file, unreadable, or larger than `limit`
// bytes.
MaybeText contentsOfFile(const std::string& path, std::size_t limit = largestTextFile);

// The same, and absent too when the bytes are not valid UTF-8.
MaybeText stringWithContentsOfFile(const std::string& path, std::size_t limit = largestTextFile);

// How a replaced file is protected against a power cut. Against a crash of the process it always is.
enum class Durability {
  // The new contents are on the disk when the call returns.
  Durable,
  // Left to the file system, which writes the contents before the new name: for files that come with many
  // others that are not synced either, such as those of a freshly unpacked project.
  Deferred,
};

// Whether reading `path` may never end: it is a FIFO or a device, links followed.
bool mayBeReadForEver(const std::string& path);

// A regular file opened for reading; none when it is missing, something else, or unreadable.
[[nodiscard]] Descriptor openRegularFile(const std::string& path);

// Reads up to `size` bytes; 0 at the end of the file, absent on an error.
std::optional<std::size_t> readSome(const Descriptor& file, char* buffer, std::size_t size);

// Replaces the file at `path`, piece by piece: at every moment either the old or the new file is there whole,
// and a full disk keeps the old one. The mode of an existing file is kept, a link stays and the file that it
// leads to is replaced; a missing file is made (mode 0644), a missing folder is not. Without commit() nothing
// is replaced.
class AtomicFile {
 public:
  explicit AtomicFile(const std::string& path);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  // commit() reports a failure.
  void write(std::string_view contents);
  // False when the old file stayed. Call it once.
  bool commit(Durability durability);

 private:
  void discard();

  std::string target_;
  std::string temporary_;
  Descriptor file_;  // none after a failure
};

// The same with all the contents at once.
bool writeToFileAtomically(const std::string& path, std::string_view contents,
                           Durability durability = Durability::Durable);
