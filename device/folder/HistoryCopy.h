// Takes a dated copy of what is in the device.
#pragma once

#include "device/folder/HistoryFolder.h"

#include <cstdint>
#include <filesystem>

namespace device {

// What a dated copy leaves out of every project.
inline constexpr const char* folderLeftOut = ".theos";
inline constexpr std::uint64_t largestFileKept = std::uint64_t{64} << 20;
// What the history may take on the disk, in bytes.
inline constexpr unsigned long long largestHistory = 2ULL << 30;

struct HistoryTools {
  // Paths on the host.
  std::filesystem::path bubblewrap;
  std::filesystem::path rsync;
};

enum class Insistence {
  // Only where something changed since the newest copy was tried.
  Changes,
  // Also where that copy is incomplete.
  Gaps,
};

// Copies what changed in DEVICE/var (opened as `var`) since the newest copy, drops the copies that are no
// longer needed, and waits for another process that is at it. Takes as long as it takes. To be used as the
// device's user, in a process that has no other children. Failures leave the history as it was; the next call
// tries again.
void takeCopy(const HistoryFolder& history, int var, const HistoryTools& tools, Insistence insistence);

// Exchanges what was moved into the history, and what a build may still have a hold of, for copies; else as
// above.
void partMoved(const HistoryFolder& history, const HistoryTools& tools);

}  // namespace device
