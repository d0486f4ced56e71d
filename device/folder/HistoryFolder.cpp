#include "device/folder/HistoryFolder.h"

#include "device/Refusal.h"
#include "device/Visible.h"
#include "device/folder/Beneath.h"
#include "device/folder/Packages.h"

#include <algorithm>
#include <fcntl.h>
#include <map>
#include <set>
#include <sstream>
#include <sys/stat.h>
#include <tuple>

namespace {

constexpr const char* historyFolder = "history";
constexpr const char* backupNote = "backup-note";
constexpr const char* movedMark = "moved";
constexpr const char* nameFormat = "%Y-%m-%dT%H-%M-%SZ";
constexpr std::size_t longestAbout = 1 << 20;
// Against a clock that was wrong for a while.
constexpr int neverTooOld = 3;
constexpr long hour = 3600;
constexpr long day = 24 * hour;
constexpr long month = 31 * day;

std::string formatted(const char* format, const std::tm* parts) {
  char text[32];
  strftime(text, sizeof text, format, parts);
  return text;
}

std::string nameAt(std::time_t time) {
  std::tm parts{};
  return formatted(nameFormat, gmtime_r(&time, &parts));
}

// Whether the name, at the end of a path, is one word to a shell, unchanged.
bool isPlain(const std::string& name) {
  return !name.empty() && name.size() <= 255 && name != "." && name != ".." &&
         isMadeOf(name, "._+-@,:#%=^~!]}", true);
}

}  // namespace

const char* folderInDevice(Kept kind) {
  constexpr std::array folders{projectsFolder, "mobile/Documents/TweakbenchBackups", packagesFolder};
  return folders[static_cast<std::size_t>(kind)];
}

const char* folderInHistory(Kept kind) {
  return std::strrchr(folderInDevice(kind), '/') + 1;
}

std::time_t timeOf(const std::string& when) {
  struct tm parts {};
  const char* end = strptime(when.c_str(), nameFormat, &parts);
  return end != nullptr && *end == '\0' ? timegm(&parts) : -1;
}

std::string localName(const std::string& when) {
  const std::time_t time = timeOf(when);
  std::tm parts{};
  return formatted("%Y-%m-%dT%H:%M:%S", localtime_r(&time, &parts));
}

HistoryFolder::HistoryFolder(int device) {
  mkdirat(device, historyFolder, 0700);
  folder_ = openFolderBeneath(device, historyFolder);
  if (!folder_) refuseWithError("The device's history cannot be opened:");
  if (statusOf(folder_.get()).st_uid != geteuid())
    throw Refusal("The device's history belongs to another user; start Tweakbench as that user.");
  mkdirat(folder_.get(), asideFolder, 0700);
}

std::vector<HistoryEntry> HistoryFolder::entries() const {
  std::vector<HistoryEntry> entries;
  const auto add = [&entries](const Descriptor& folder, bool isSetAside) {
    for (const auto& name : namesInOrNone(folder.get())) {
      if (timeOf(name) < 0) continue;
      HistoryEntry entry{name, isSetAside, true, {}};
      if (!isSetAside) {
        std::istringstream about(
            readBeneath(folder.get(), fs::path(name) / aboutFile, longestAbout).value_or(""));
        std::string line;
        std::getline(about, line);
        entry.isWhole = line == "whole";
        while (std::getline(about, line)) entry.remarks.push_back(line);
      }
      entries.push_back(std::move(entry));
    }
  };
  add(openFolderBeneath(folder_.get(), "."), false);
  add(openFolderBeneath(folder_.get(), asideFolder), true);
  std::sort(entries.begin(), entries.end(), [](const HistoryEntry& one, const HistoryEntry& other) {
    return std::tie(one.when, one.isSetAside) > std::tie(other.when, other.isSetAside);
  });
  return entries;
}

Descriptor HistoryFolder::open(const HistoryEntry& entry, const fs::path& path) const {
  return openFolderBeneath(folder_.get(), fs::path(entry.isSetAside ? asideFolder : ".") / entry.when / path);
}

std::string HistoryFolder::newName() const {
  std::time_t time = std::time(nullptr);
  while (exists(folder_.get(), nameAt(time)) || exists(folder_.get(), fs::path(asideFolder) / nameAt(time)))
    ++time;
  return nameAt(time);
}

Descriptor HistoryFolder::makePlace(const std::string& when, const fs::path& path) const {
  unlinkat(folder_.get(), usageFile, 0);
  return makeFolderBeneath(folder_.get(), fs::path(asideFolder) / when / path.parent_path());
}

void HistoryFolder::removePlace(const std::string& when, const fs::path& path) const {
  const int error = errno;
  for (fs::path left = path.parent_path();; left = left.parent_path()) {
    unlinkat(folder_.get(), (fs::path(asideFolder) / when / left).c_str(), AT_REMOVEDIR);
    if (left.empty()) break;
  }
  errno = error;
}

std::string HistoryFolder::setAside(int parent, const std::string& name, const fs::path& path,
                                    const std::string& entry) const {
  std::string when = entry.empty() ? newName() : entry;
  const Descriptor target = makePlace(when, path);
  if (target && renameToNew(parent, name, target.get(), path.filename())) {
    noteMoved(when);
    return when;
  }
  removePlace(when, path);
  refuseWithError(name + " could not be moved into the device's history:");
}

void HistoryFolder::noteMoved(const std::string& when) const {
  const fs::path note = fs::path(asideFolder) / when / movedMark;
  if (!exists(folder_.get(), note)) writeAtomically(folder_.get(), note, "", 0600);
}

std::vector<std::string> HistoryFolder::moved() const {
  const Descriptor aside = openFolderBeneath(folder_.get(), asideFolder);
  auto names = namesInOrNone(aside.get());
  std::erase_if(names, [&](const std::string& name) {
    return timeOf(name) < 0 || !exists(aside.get(), fs::path(name) / movedMark);
  });
  return names;
}

bool HistoryFolder::part(const std::string& when, const std::string& copy) const {
  const fs::path entry = fs::path(asideFolder) / when;
  unlinkat(folder_.get(), (fs::path(copy) / movedMark).c_str(), 0);
  unlinkat(folder_.get(), usageFile, 0);
  return renameat2(folder_.get(), copy.c_str(), folder_.get(), entry.c_str(), RENAME_EXCHANGE) == 0;
}

BackupNote HistoryFolder::noted() const {
  std::istringstream lines(readBeneath(folder_.get(), backupNote, 4096).value_or(""));
  BackupNote note;
  std::getline(lines, note.name) && std::getline(lines, note.older);
  return note;
}

void HistoryFolder::replace(int parent, const std::string& name, int newParent, const std::string& newName,
                            const std::string& when, const fs::path& path) const {
  const Descriptor target = makePlace(when, path);
  const std::string kept = path.filename();
  const std::string waiting = kept + ".new";
  const auto exchange = [&] {
    // Whatever happens to the launcher, what was there is in the place or already where it is kept.
    if (renameat2(parent, name.c_str(), target.get(), kept.c_str(), RENAME_EXCHANGE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    return renameat(target.get(), kept.c_str(), target.get(), waiting.c_str()) == 0 &&
           renameat(parent, name.c_str(), target.get(), kept.c_str()) == 0 &&
           renameat(target.get(), waiting.c_str(), parent, name.c_str()) == 0;
  };
  if (target && renameToNew(newParent, newName, target.get(), kept)) {
    if (exchange()) return noteMoved(when);
    const int error = errno;
    const bool isWaiting = exists(target.get(), waiting);
    if (isWaiting && exists(target.get(), kept)) renameToNew(target.get(), kept, parent, name);
    renameToNew(target.get(), isWaiting ? waiting : kept, newParent, newName);
    errno = error;
  }
  removePlace(when, path);
  refuseWithError(name + " could not be replaced:");
}

void HistoryFolder::beginBackup(int var, const std::string& name) const {
  if (!isPlain(name)) return;
  const Descriptor backups = openFolderBeneath(var, folderInDevice(Kept::Backup));
  const bool hasOlder = backups && exists(backups.get(), name);
  // First what is about to happen, with the place where the older one will be then.
  const std::string when = newName();
  if (!writeAtomically(folder_.get(), backupNote, name + "\n" + (hasOlder ? when : "") + "\n", 0600)) return;
  if (!hasOlder) return;
  const Descriptor aside = makePlace(when, fs::path(folderInHistory(Kept::Backup)) / name);
  if (!aside || !renameToNew(backups.get(), name, aside.get(), name)) finishBackup();
}

void HistoryFolder::finishBackup() const {
  if (const std::string when = noted().older; timeOf(when) >= 0) noteMoved(when);
  unlinkat(folder_.get(), backupNote, 0);
}

void HistoryFolder::undoBackup(int var) const {
  const auto [name, when] = noted();
  if (!isPlain(name)) return finishBackup();
  const fs::path inHistory = folderInHistory(Kept::Backup);
  const Descriptor aside = openFolderBeneath(folder_.get(), asideFolder / fs::path(when) / inHistory);
  const bool hasMoved = exists(aside.get(), name);
  // Killed before the older one was moved, or after it was put back: what is there is whole.
  if (!when.empty() && !hasMoved) return finishBackup();
  const fs::path place = folderInDevice(Kept::Backup);
  const Descriptor backups = hasMoved ? makeFolderBeneath(var, place) : openFolderBeneath(var, place);
  if (exists(backups.get(), name)) setAside(backups.get(), name, inHistory / name);
  if (backups && hasMoved && renameToNew(aside.get(), name, backups.get(), name))
    removePlace(when, inHistory / name);
  finishBackup();
}

std::vector<std::string> thinnedOut(const std::vector<HistoryEntry>& copies, std::time_t now) {
  std::set<std::string> kept;
  int whole = 0;
  // The newest of each stretch of time, by the stretch's length and number; a whole one before all others.
  std::map<std::pair<long, long>, const HistoryEntry*> newest;
  for (const auto& copy : copies) {
    const std::time_t time = timeOf(copy.when);
    // Negative where the clock has been set back; such a copy stays until its time has come again.
    const long age = now - time;
    if (copy.isWhole && whole++ < neverTooOld) kept.insert(copy.when);
    if (age <= hour || &copy == &copies.front()) kept.insert(copy.when);
    if (age <= hour || age > month) continue;
    const long stretch = age <= day ? hour : day;
    const HistoryEntry*& best = newest[{stretch, time / stretch}];
    if (best == nullptr || (copy.isWhole && !best->isWhole)) best = &copy;
  }
  for (const auto& [stretch, copy] : newest) kept.insert(copy->when);
  std::vector<std::string> thinned;
  for (const auto& copy : copies) {
    if (!kept.contains(copy.when)) thinned.push_back(copy.when);
  }
  return thinned;
}

std::string leastMissed(const std::vector<HistoryEntry>& entries) {
  const auto newestWhole = std::find_if(entries.begin(), entries.end(),
                                        [](const auto& entry) { return entry.isWhole && !entry.isSetAside; });
  std::string found;
  std::time_t closest = 0;
  for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
    if (entry == entries.begin() || entry == newestWhole) continue;
    const std::time_t gap = timeOf(std::prev(entry)->when) - timeOf(entry->when);
    if (!found.empty() && gap >= closest) continue;
    found = entry->when;
    closest = gap;
  }
  return found;
}
