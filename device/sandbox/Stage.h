// Where root shows the device's user what that user could not reach by itself.
#pragma once

#include "core/Descriptor.h"

#include <filesystem>
#include <string>
#include <vector>

// Only for root, once in a process, before it becomes the device's user. The folders that lie in closed
// folders (such as root's home) are shown under a path that everyone can reach, in a mount namespace of this
// process, so that nobody else sees a difference.
class Stage {
 public:
  // Enters the mount namespace; throws Refusal.
  Stage();

  // Will show `source` (a folder or a socket). Returns where, once mount() has run.
  std::filesystem::path add(const std::filesystem::path& source, const std::string& name);

  // As add() for a folder of Tweakbench's own files: what others may not read in it, a strict umask being the
  // usual cause, is shown as a readable copy.
  std::filesystem::path addReadable(const std::filesystem::path& source, const std::string& name);

  // Mounts everything that was added.
  void mount();

 private:
  struct Entry {
    Descriptor source;
    std::filesystem::path target;
    // Empty, or what to copy instead of mounting.
    std::filesystem::path copied;
    bool isFolder;
  };
  void addEntry(const std::filesystem::path& source, const std::filesystem::path& target);

  std::vector<Entry> entries_;
};
