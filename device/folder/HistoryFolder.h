// What was in the device earlier, kept where nothing in the device can write.
//
//   DEVICE/history/WHEN/{Projects,TweakbenchBackups,Tweakbench}  dated copies: projects, backups, packages.
//                                                                Unchanged files are shared between copies.
//   DEVICE/history/WHEN/about       "whole" or "incomplete", then one remark a line
//   DEVICE/history/set-aside/WHEN/PATH  moved there whole, such as Projects/NAME
//   DEVICE/history/state            what the newest dated copy was made from
//   DEVICE/history/backup-note      the backup that the application is making
//   DEVICE/history/lock             locked while a dated copy is made; the folder itself is locked, shared,
//   as
//                                   long as a process takes copies
//
// WHEN is the time in UTC. What is below the dated folders comes from programs in the device and is hostile.
#pragma once

#include "core/Descriptor.h"

#include <array>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace device {

enum class Kept { Project, Backup, Packages };
inline constexpr std::array<Kept, 3> allKept{Kept::Project, Kept::Backup, Kept::Packages};
// The folder with things of this kind: below DEVICE/var, and below a dated copy.
const char* folderInDevice(Kept kind);
const char* folderInHistory(Kept kind);

struct HistoryEntry {
  // The name of its folder.
  std::string when;
  bool isSetAside;
  // False for a dated copy of which something could not be read or was too much.
  bool isWhole;
  // Sentences on what is missing. They contain names from the device.
  std::vector<std::string> remarks;
};

// To be used as the device's user.
class HistoryFolder {
 public:
  // Opens DEVICE/history, made where missing; `device` is DEVICE, opened. Throws Refusal.
  explicit HistoryFolder(int device);

  int folder() const { return folder_.get(); }
  // Newest first.
  std::vector<HistoryEntry> entries() const;
  // The folder PATH of an entry; empty where the entry has none.
  Descriptor open(const HistoryEntry& entry, const std::filesystem::path& path) const;

  // Moves what `parent` has under `name`, whatever it is, to `path` in an entry of the history, and returns
  // that entry's name: a new one unless `entry` is the one to use. It must be on the device's own file
  // system. Throws Refusal, and then nothing has moved.
  std::string setAside(int parent, const std::string& name, const std::filesystem::path& path,
                       const std::string& entry = {}) const;

  // Puts the entry `newName` of the folder `newParent` in the place of `name` in `parent`, and keeps what was
  // there at `path` in the entry `when`, which may be a new one. In one step where the file system knows how;
  // elsewhere a kill in the middle leaves nothing in the place, and both whole in the history. Throws
  // Refusal, and then nothing has moved.
  void replace(int parent, const std::string& name, int newParent, const std::string& newName,
               const std::string& when, const std::filesystem::path& path) const;

  // The set-aside entries that were moved out of the device as they were. A build can still write into such a
  // one, by hard links to its files and as its working folder, until part() has put a copy in its place,
  // which was made beside the entries under the name `copy`. That name has then what the entry was.
  std::vector<std::string> moved() const;
  bool part(const std::string& when, const std::string& copy) const;

  // A name for an entry of this moment that no entry has yet.
  std::string newName() const;

  // The three steps of a backup of the project `name` to DEVICE/var: notes it and sets an older backup aside
  // before the application's first command; afterwards removes the note, or puts the older one back in the
  // place of what was made. `var` is DEVICE/var. Names that a shell would not take as they are get no note.
  void beginBackup(int var, const std::string& name) const;
  void finishBackup() const;
  // Also for the next start after a run that was killed; does nothing where no backup is noted.
  void undoBackup(int var) const;
  // The set-aside entry with the older one of the backup that is noted; empty where there is none.
  std::string notedOlder() const;

 private:
  // The folder that is to get `path` in the set-aside entry `when`, made where missing.
  Descriptor makePlace(const std::string& when, const std::filesystem::path& path) const;
  void noteMoved(const std::string& when) const;
  // Removes the folders of such a place that are empty; errno stays.
  void removePlace(const std::string& when, const std::filesystem::path& path) const;

  Descriptor folder_;
};

// The time of an entry; -1 for a name that is none of an entry.
std::time_t timeOf(const std::string& when);
// Its name as people read it, in local time: 2026-11-23T10:41:07.
std::string localName(const std::string& when);

// Which of the dated copies, given newest first, are no longer needed at the time `now`: of the last hour all
// stay, one for each hour of the last day, one for each day of the last month, and the newest whole ones. A
// whole copy never gives way to an incomplete one.
std::vector<std::string> thinnedOut(const std::vector<HistoryEntry>& copies, std::time_t now);
// Which copy goes first where space is short: the one that is closest to the next newer one. Empty where only
// the newest, the newest whole copy, or none is left.
std::string leastMissed(const std::vector<HistoryEntry>& entries);

}  // namespace device
