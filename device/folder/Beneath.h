// Opens and writes below a folder with hostile contents. Follows no link and never leaves the folder.
#pragma once

#include "core/Descriptor.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

// `path` is relative to `folder`. An empty result leaves the reason in errno; a link on the way is ELOOP.
Descriptor openBeneath(int folder, const std::filesystem::path& path, int flags);
Descriptor openFolderBeneath(int folder, const std::filesystem::path& path);

// Opens the folder `path` and makes it and its parents where missing. Empty where something else is in the
// way.
Descriptor makeFolderBeneath(int folder, const std::filesystem::path& path);

// Whether there is an entry of that name; links count.
bool exists(int folder, const std::string& name);

// The content of a regular file of at most `limit` bytes; absent for anything else.
std::optional<std::string> readBeneath(int folder, const std::filesystem::path& path, std::size_t limit);

// The last `limit` bytes of a regular file, or all of a shorter one; absent for anything else.
std::optional<std::string> readEndBeneath(int folder, const std::filesystem::path& path, std::size_t limit);

// Renames an entry, also into another folder of the same file system. False, with errno EEXIST or ENOTEMPTY,
// if the name is taken.
bool renameToNew(int folder, const std::string& name, int newFolder, const std::string& newName);

// Replaces the file `name` in `folder` in one step. On failure returns false with errno, and the old file
// stays.
bool writeAtomically(int folder, const std::string& name, const std::string& content, mode_t mode);

// Deletes the entry `name` in `folder` with everything in it, but no target of a link. False with errno if
// something is left.
bool removeBeneath(int folder, const std::string& name);

// The names in a folder without "." and "..", in the file system's order. Absent with errno on failure, E2BIG
// for more than a million. `pause` is called for each name and may throw.
std::optional<std::vector<std::string>> namesIn(int folder, const std::function<void()>& pause = {});
// The same; nothing on failure, also where `folder` is empty.
std::vector<std::string> namesInOrNone(const Descriptor& folder);
