// Opening and writing below a folder whose contents are not to be trusted: no link is followed, nothing above
// is reached.
#pragma once

#include "core/Descriptor.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace device {

// `path` is relative to `folder`. An empty result leaves the reason in errno; a link on the way is ELOOP.
Descriptor openBeneath(int folder, const std::filesystem::path& path, int flags);
Descriptor openFolderBeneath(int folder, const std::filesystem::path& path);

// Opens the folder `path` and makes it and its parents where missing. Empty where something else is in the
// way.
Descriptor makeFolderBeneath(int folder, const std::filesystem::path& path);

// Whether there is an entry of that name, links included.
bool exists(int folder, const std::string& name);

// The content of a regular file of at most `limit` bytes; absent for anything else.
std::optional<std::string> readBeneath(int folder, const std::filesystem::path& path, std::size_t limit);

// The last `limit` bytes of a regular file, or all of it where it is shorter; absent for anything else.
std::optional<std::string> readEndBeneath(int folder, const std::filesystem::path& path, std::size_t limit);

// Gives an entry another name, also in another folder of the same file system. False, with errno EEXIST or
// ENOTEMPTY, where that name is taken.
bool renameToNew(int folder, const std::string& name, int newFolder, const std::string& newName);

// Replaces the file `name` in `folder` in one step; on false, errno tells why and the old file stands.
bool writeAtomically(int folder, const std::string& name, const std::string& content, mode_t mode);

// Deletes the entry `name` in `folder` with everything in it; links are deleted themselves. False where
// something is left, errno tells why.
bool removeBeneath(int folder, const std::string& name);

// What fdopendir() would give, "." and ".." dropped; absent with errno set on failure, E2BIG where there are
// more than a million. `pause` is called again and again, and what it throws goes through.
std::optional<std::vector<std::string>> namesIn(int folder, const std::function<void()>& pause = {});
// The same; nothing on failure, also where `folder` is empty.
std::vector<std::string> namesInOrNone(const Descriptor& folder);

}  // namespace device
