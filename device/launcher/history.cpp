// history and restore: what was in the device earlier.
#include "device/Refusal.h"
#include "device/Visible.h"
#include "device/folder/Beneath.h"
#include "device/launcher/Commands.h"

#include <algorithm>
#include <iostream>
#include <set>
#include <sys/file.h>

namespace {

constexpr int notThere = 1;
constexpr std::size_t namedAtMost = 4;
constexpr const char* indent = "                     ";
constexpr int deepest = 200;

// Absent, or one that is not kept, has no type.
struct stat look(int folder, const std::string& name) {
  const struct stat status = statusOf(folder, name);
  const struct stat nothing {};
  const bool isKept =
      (S_ISREG(status.st_mode) && static_cast<std::uint64_t>(status.st_size) <= largestFileKept) ||
      S_ISLNK(status.st_mode) || (S_ISDIR(status.st_mode) && name != folderLeftOut);
  return isKept ? status : nothing;
}

// Adds the paths below two folders at which they differ to `found`, at most `limit`, and never what the
// history leaves out. Does not read files: those of the same size and modification time count as equal.
void compare(int older, int newer, const std::string& above, int depth, std::size_t limit,
             std::vector<std::string>& found) {
  std::set<std::string> names;
  for (int folder : {older, newer}) {
    for (auto& name : namesInOrNone(folder)) names.insert(std::move(name));
  }
  for (const auto& name : names) {
    if (found.size() >= limit) return;
    const struct stat before = look(older, name);
    const struct stat after = look(newer, name);
    bool isSame = (before.st_mode & S_IFMT) == (after.st_mode & S_IFMT);
    if (isSame && S_ISREG(before.st_mode)) {
      isSame = before.st_ino == after.st_ino || looksSame(before, after);
    } else if (isSame && S_ISLNK(before.st_mode)) {
      isSame = linkTarget(older, name) == linkTarget(newer, name);
    } else if (isSame && S_ISDIR(before.st_mode) && depth < deepest) {
      const Descriptor olderInside = openFolderBeneath(older, name);
      const Descriptor newerInside = openFolderBeneath(newer, name);
      if (olderInside && newerInside)
        compare(olderInside.get(), newerInside.get(), above + name + "/", depth + 1, limit, found);
    }
    if (!isSame) found.push_back(above + name);
  }
}

std::vector<std::string> differences(int older, int newer, std::size_t limit) {
  std::vector<std::string> found;
  compare(older, newer, {}, 0, limit, found);
  return found;
}

std::string called(Kept kind, const std::string& name) {
  const char* what = kind == Kept::Backup ? "the backup " : kind == Kept::Packages ? "the packages of " : "";
  return what + visible(name);
}

// A few of the names, in one line.
std::string listed(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), namedAtMost); ++i)
    text.append(i == 0 ? "" : ", ").append(visible(names[i]));
  return names.size() > namedAtMost ? text + " and more" : text;
}

// Remarks of a copy begin with a path, KIND/NAME and what is in it, or are about the copy as a whole.
bool isGeneral(const std::string& remark) {
  return remark.find('/') == std::string::npos;
}

bool isAbout(const std::string& remark, Kept kind, const std::string& name) {
  const std::string path = std::string(folderInHistory(kind)) + "/" + visible(name);
  return remark.starts_with(path) && (remark[path.size()] == '/' || remark[path.size()] == ' ');
}

// What the entry has and `older`, the dated copy before it, has not, and the other way round: sentences, of
// one project only where `only` names it.
std::vector<std::string> changesOf(const HistoryFolder& history, const HistoryEntry& entry,
                                   const HistoryEntry* older, const std::string& only) {
  std::vector<std::string> changes;
  for (const Kept kind : allKept) {
    const Descriptor after = history.open(entry, folderInHistory(kind));
    const Descriptor before = older != nullptr ? history.open(*older, folderInHistory(kind)) : Descriptor();
    std::map<std::string, int> names;
    for (const Descriptor* folder : {&before, &after}) {
      for (const auto& name : namesInOrNone(folder->get())) names[name] |= folder == &after ? 2 : 1;
    }
    for (const auto& [name, where] : names) {
      if (!only.empty() && name != only) continue;
      const auto isRemark = [&, name = name](const std::string& remark) {
        return isAbout(remark, kind, name);
      };
      std::string change = called(kind, name);
      if (entry.isSetAside)
        change += " was set aside";
      else if (where == 1)
        change +=
            std::any_of(entry.remarks.begin(), entry.remarks.end(), isRemark) ? " was not kept" : " is gone";
      else if (where == 2)
        change += older != nullptr ? " is new" : " is there";
      else {
        const Descriptor then = openFolderBeneath(before.get(), name);
        const Descriptor now = openFolderBeneath(after.get(), name);
        const auto different =
            then && now ? differences(then.get(), now.get(), namedAtMost + 1) : std::vector<std::string>();
        if (different.empty()) continue;
        change += ": " + listed(different);
      }
      changes.push_back(std::move(change));
    }
  }
  return changes;
}

// The entries that have the thing, newest first.
std::vector<HistoryEntry> entriesWith(const HistoryFolder& history, const fs::path& path) {
  auto entries = history.entries();
  std::erase_if(entries, [&](const HistoryEntry& entry) { return !history.open(entry, path); });
  return entries;
}

// The one that `when` means. A name as the history prints it, or in UTC as its folder is called, or the
// beginning of one; without it the newest one that is not just what is in the device now.
HistoryEntry choose(const HistoryFolder& history, const std::vector<HistoryEntry>& entries, std::string when,
                    const fs::path& path, int present) {
  if (when.empty()) {
    const auto differs = [&](const HistoryEntry& entry) {
      return present < 0 || !differences(history.open(entry, path).get(), present, 1).empty();
    };
    const auto found = std::find_if(entries.begin(), entries.end(), differs);
    if (found == entries.end()) throw Refusal("The history has nothing but what is in the device now.");
    return *found;
  }
  std::replace(when.begin(), when.end(), ' ', 'T');
  std::vector<HistoryEntry> meant;
  for (const auto& entry : entries) {
    if (localName(entry.when).starts_with(when) || entry.when.starts_with(when)) meant.push_back(entry);
  }
  if (meant.empty())
    throw Refusal("There is no copy of " + visible(when) + "; see \"tweakbench history NAME\".");
  if (meant.size() > 1) {
    std::vector<std::string> names;
    names.reserve(meant.size());
    for (const auto& entry : meant) names.push_back(localName(entry.when));
    throw Refusal(visible(when) + " could be " + listed(names) + "; give more of the time.");
  }
  return meant.front();
}

}  // namespace

int showHistory(const Options& options) {
  const Transfer device = openForCopying(options, 022);
  const HistoryFolder history(device.folder.get());
  const auto entries = history.entries();
  bool isAny = false;
  for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
    const auto older =
        std::find_if(entry + 1, entries.end(), [](const auto& other) { return !other.isSetAside; });
    const auto changes =
        changesOf(history, *entry, older == entries.end() ? nullptr : &*older, options.project);
    if (changes.empty() && !options.project.empty()) continue;
    isAny = true;
    std::cout << localName(entry->when) << "  " << (entry->isWhole ? "" : "(incomplete) ");
    for (std::size_t i = 0; i < changes.size(); ++i) std::cout << (i == 0 ? "" : "; ") << changes[i];
    std::cout << (!changes.empty()    ? ""
                  : entry->isSetAside ? "something else was set aside: history/set-aside/" + entry->when
                                      : "no file changed")
              << "\n";
    for (const auto& remark : entry->remarks) {
      const auto isOfProject = [&](Kept kind) { return isAbout(remark, kind, options.project); };
      if (options.project.empty() || isGeneral(remark) ||
          std::any_of(allKept.begin(), allKept.end(), isOfProject))
        std::cout << indent << "not kept: " << remark << "\n";
    }
    std::cout << std::flush;
    // Whoever reads has seen enough.
    if (!std::cout) return launcherFailed;
  }
  if (isAny) return 0;
  say(options.project.empty() ? "There is no history yet."
                              : "The history does not have " + visible(options.project) + ".");
  return notThere;
}

int restore(const Transfer& device, const Options& options) {
  const HistoryFolder history(device.folder.get());
  const fs::path path = fs::path(folderInHistory(options.kept)) / options.project;
  const auto entries = entriesWith(history, path);
  const std::string what = called(options.kept, options.project);
  if (entries.empty()) throw Refusal("The history does not have " + what + ".");
  const fs::path place = folderInDevice(options.kept);
  const Descriptor present = openFolderBeneath(device.var.get(), place / options.project);
  const HistoryEntry entry = choose(history, entries, options.when, path, present.get());
  // A copy that is being taken meanwhile drops old entries, but no locked one.
  const Descriptor held = history.open(entry, ".");
  if (held) flock(held.get(), LOCK_SH);
  const Transferred done = copyBack(device, history.open(entry, path).get(), place, options.project);
  tellLeftOut("they cannot be read or are not files", done.leftOut);
  bool isMissed = false;
  for (const auto& remark : entry.remarks) {
    if (!isGeneral(remark) && !isAbout(remark, options.kept, options.project)) continue;
    say("That copy is incomplete: " + remark);
    isMissed = true;
  }
  const auto whole =
      std::find_if(entries.begin(), entries.end(), [](const auto& one) { return one.isWhole; });
  if (isMissed && !entry.isWhole && whole != entries.end())
    say("The newest whole copy is of " + localName(whole->when) + ".");
  std::cout << "Brought back " << (options.kept == Kept::Project ? "the project " : "") << what << " of "
            << localName(entry.when) << ", without " << folderLeftOut;
  if (done.what != options.project)
    std::cout << ", as " << visible(done.what) << ", since " << visible(options.project)
              << " is there already";
  std::cout << ".\n" << std::flush;
  return std::cout ? 0 : launcherFailed;
}
