// Looks at everything in the device that the history keeps, without reading a file, and tells what changed.
#pragma once

#include "core/Descriptor.h"
#include "device/folder/HistoryFolder.h"

#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace device {

// What a dated copy leaves out of every project.
inline constexpr const char* folderLeftOut = ".theos";
inline constexpr std::uint64_t largestFileKept = std::uint64_t{64} << 20;
inline constexpr std::size_t mostEntriesKept = 200'000;

// A project, a backup, or a project's packages.
struct WalkedItem {
  // Below a dated copy, such as Projects/NAME.
  std::string path;
  std::size_t entries = 0;
  // The sizes of what has to be copied, no less than what that takes on the disk.
  std::uint64_t newBytes = 0;
};

struct Walk {
  // Every entry with its inode, size and times. Equal for two walks between which nothing changed; never
  // empty.
  std::string state;
  std::vector<WalkedItem> items;
  // What is left out, as sentences.
  std::vector<std::string> remarks;
  // False where something could not be looked at, or was too much to look at.
  bool isWhole = true;
  // Some file has the size and time that it had before, and was changed nevertheless.
  bool hasDisguisedChange = false;
  // What the last dated copy takes at most.
  std::uint64_t oldBytes = 0;
};

// The folders in which the kinds of things are, in the order of allKept; empty where there is none, or a link
// in its place.
using KeptFolders = std::array<Descriptor, allKept.size()>;
KeptFolders openKept(int var);

// What the newest dated copy has.
struct LastCopy {
  // Of the walk before it; empty where there is no such copy.
  std::string state;
  // Items that were in the device and did not get into the copy.
  std::set<std::string> leftOut;
};

// Follows no link.
Walk walk(const KeptFolders& folders, const LastCopy& last);

}  // namespace device
