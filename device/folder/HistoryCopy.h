// Takes a dated copy of the projects, backups and packages in the device.
#pragma once

#include "device/folder/HistoryFolder.h"

#include <cstdint>
#include <filesystem>

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

// Copies what changed in DEVICE/var (opened as `var`) since the newest copy and drops the copies that are no
// longer needed. Waits for another process that does the same; may take minutes. Call it as the device's user
// in a process without other children. A failure leaves the history as it was; the next call tries again.
void takeCopy(const HistoryFolder& history, int var, const HistoryTools& tools, Insistence insistence);

// Replaces what was moved into the history by copies, since a build may still have it open. Otherwise as
// above.
void partMoved(const HistoryFolder& history, const HistoryTools& tools);
