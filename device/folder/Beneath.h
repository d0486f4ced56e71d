// Opens and writes below a folder with hostile contents. Follows no link and never leaves the folder. In a
// folder that could not be opened (-1) there is nothing.
#pragma once

#include "core/Descriptor.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace fs = std::filesystem;

// `path` is relative to `folder`. An empty result leaves the reason in errno; a link on the way is ELOOP.
Descriptor openBeneath(int folder, const fs::path& path, int flags);
Descriptor openFolderBeneath(int folder, const fs::path& path);

// Opens the folder `path` and makes it and its parents where missing. Empty where something else is in the
// way.
Descriptor makeFolderBeneath(int folder, const fs::path& path);

// The status of what is open, or of an entry, without following links. On failure all of it is 0, with errno.
struct stat statusOf(int descriptor);
struct stat statusOf(int folder, const std::string& name);
// Whether there is an entry of that name; links count.
bool exists(int folder, const std::string& name);

// A regular file, opened for reading; empty for anything else.
Descriptor openPlainFile(int folder, const fs::path& path);

// The content of a regular file; absent for anything else. Of a file longer than `limit` bytes `longer`
// decides: absent, or its last `limit` bytes.
enum class LongFile { Absent, End };
std::optional<std::string> readBeneath(int folder, const fs::path& path, std::size_t limit,
                                       LongFile longer = LongFile::Absent);

// Where a link leads; absent with errno for anything else.
std::optional<std::string> linkTarget(int folder, const std::string& name);

// Renames an entry, also into another folder of the same file system. False, with errno EEXIST or ENOTEMPTY,
// if the name is taken.
bool renameToNew(int folder, const std::string& name, int newFolder, const std::string& newName);

// Writes all of `content` at this place of the file; false with errno on failure.
bool writeAt(int file, std::string_view content, off_t place);

// Replaces the file `name` in `folder` in one step. On failure returns false with errno, and the old file
// stays.
bool writeAtomically(int folder, const std::string& name, const std::string& content, mode_t mode);

// A path of this process's that leads to what is open, for calls that take no descriptor.
inline std::string pathOf(int descriptor) {
  return "/proc/self/fd/" + std::to_string(descriptor);
}

// The names in a folder without "." and "..", in the file system's order. Absent with errno on failure, E2BIG
// for more than `most`: a folder that a build fills with names must not fill the memory.
std::optional<std::vector<std::string>> namesIn(int folder, std::size_t most = 1'000'000);
// The same; nothing on failure.
std::vector<std::string> namesInOrNone(int folder);

// A time that a file has, as one number.
inline std::int64_t nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

// Whether two files look alike without being read.
inline bool looksSame(const struct stat& one, const struct stat& other) {
  return one.st_size == other.st_size && nanoseconds(one.st_mtim) == nanoseconds(other.st_mtim);
}
