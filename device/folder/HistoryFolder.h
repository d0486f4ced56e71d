// Earlier states of projects, backups and packages, kept where nothing in the device can write.
//
//   DEVICE/history/WHEN/{Projects,TweakbenchBackups,Tweakbench}  dated copies: projects, backups, packages.
//                                                                Unchanged files are shared between copies.
//   DEVICE/history/WHEN/about       "whole" or "incomplete", then one remark a line
//   DEVICE/history/set-aside/WHEN/PATH  moved there whole, such as Projects/NAME
//   DEVICE/history/state            what the newest dated copy was made from
//   DEVICE/history/backup-note      the backup that the application is making
//   DEVICE/history/lock             locked while a dated copy is made
//
// Each process that takes copies holds a shared lock on the folder itself. WHEN is the time in UTC. The
// contents of the dated folders come from programs in the device and are hostile.
#pragma once

#include "core/Descriptor.h"

#include <array>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

enum class Kept { Project, Backup, Packages };
inline constexpr std::array<Kept, 3> allKept{Kept::Project, Kept::Backup, Kept::Packages};
// Names in the history's folder: what was set aside; in a copy, what it says about itself; what the whole
// takes on the disk, as far as that is known.
inline constexpr const char* asideFolder = "set-aside";
inline constexpr const char* aboutFile = "about";
inline constexpr const char* usageFile = "usage";

// The folder with things of this kind: below DEVICE/var, and below a dated copy.
const char* folderInDevice(Kept kind);
const char* folderInHistory(Kept kind);

struct HistoryEntry {
  // The name of its folder.
  std::string when;
  bool isSetAside;
  // False for a dated copy that lacks what could not be read or was too large.
  bool isWhole;
  // Sentences on what is missing. They contain names from the device.
  std::vector<std::string> remarks;
};

// The backup that is being made: of which project, and the set-aside entry with its older backup. Empty where
// there is none.
struct BackupNote {
  std::string name;
  std::string older;
};

// Call everything as the device's user.
class HistoryFolder {
 public:
  // Opens DEVICE/history and makes it if missing. `device` is DEVICE, opened. Throws Refusal.
  explicit HistoryFolder(int device);

  int folder() const { return folder_.get(); }
  // Newest first.
  std::vector<HistoryEntry> entries() const;
  // Opens the folder `path` of an entry; empty if the entry has none.
  Descriptor open(const HistoryEntry& entry, const fs::path& path) const;

  // Moves `name` in the folder `parent`, whatever it is, to `path` in a set-aside entry and returns that
  // entry's name: a new one unless `entry` names one. It must be on the device's file system. If it throws
  // Refusal, nothing has moved.
  std::string setAside(int parent, const std::string& name, const fs::path& path,
                       const std::string& entry = {}) const;

  // Replaces `name` in `parent` by `newName` of `newParent` and keeps what was there at `path` in the
  // set-aside entry `when`, which may be new. This is one step if the file system can exchange names;
  // otherwise a kill in the middle leaves nothing at `name`, and both whole in the history. If it throws
  // Refusal, nothing has moved.
  void replace(int parent, const std::string& name, int newParent, const std::string& newName,
               const std::string& when, const fs::path& path) const;

  // The set-aside entries that were moved out of the device. A build can still write into them, by hard links
  // and as its working folder, until part() exchanges them for a copy, which the caller made in the history's
  // folder under the name `copy`. That name is then the moved entry.
  std::vector<std::string> moved() const;
  bool part(const std::string& when, const std::string& copy) const;

  // A name for an entry of this moment that no entry has yet.
  std::string newName() const;

  // The three steps of a backup of the project `name`. `var` is DEVICE/var. The first, before the
  // application's first command, notes the backup and sets the older one aside; afterwards the note is
  // removed, or the older backup replaces what was made. Names that the shell would change are not noted.
  void beginBackup(int var, const std::string& name) const;
  void finishBackup() const;
  // Also for the next start after a killed run. Does nothing if no backup is noted.
  void undoBackup(int var) const;
  BackupNote noted() const;

 private:
  // Opens the folder above `path` in the set-aside entry `when` and makes it if missing.
  Descriptor makePlace(const std::string& when, const fs::path& path) const;
  void noteMoved(const std::string& when) const;
  // Removes the folders of such a place that are empty; errno stays.
  void removePlace(const std::string& when, const fs::path& path) const;

  Descriptor folder_;
};

// The time of an entry; -1 if the name is not one of an entry.
std::time_t timeOf(const std::string& when);
// Its name as people read it, in local time: 2026-11-23T10:41:07.
std::string localName(const std::string& when);

// Which of the dated copies, given newest first, are no longer needed at the time `now`. All of the last hour
// stay, one for each hour of the last day, one for each day of the last month, and the newest whole ones. An
// incomplete copy never replaces a whole one.
std::vector<std::string> thinnedOut(const std::vector<HistoryEntry>& copies, std::time_t now);
// Which copy to drop first if space is short: the one closest in time to the next newer one. Empty if only
// the newest and the newest whole copy are left.
std::string leastMissed(const std::vector<HistoryEntry>& entries);

// What a dated copy leaves out of every project.
inline constexpr const char* folderLeftOut = ".theos";
inline constexpr std::uint64_t largestFileKept = std::uint64_t{64} << 20;
// What the history may take on the disk, in bytes.
inline constexpr unsigned long long largestHistory = 2ULL << 30;

struct HistoryTools {
  // Paths on the host. Without rsync no copies are taken.
  fs::path bubblewrap;
  fs::path rsync;
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
