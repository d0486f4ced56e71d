// history and restore: what was in the device earlier.
#include "device/Process.h"
#include "device/Refusal.h"
#include "device/Visible.h"
#include "device/folder/Beneath.h"
#include "device/folder/DeviceFolder.h"
#include "device/folder/HistoryChanges.h"
#include "device/folder/HistoryFolder.h"
#include "device/folder/HistoryWalk.h"
#include "device/launcher/Commands.h"
#include "device/transfer/Transfer.h"

#include <algorithm>
#include <iostream>
#include <map>
#include <signal.h>
#include <unistd.h>

namespace device {
namespace {

namespace fs = std::filesystem;

constexpr int kNotThere = 1;
constexpr std::size_t kNamedAtMost = 4;
constexpr const char* kIndent = "                     ";

// An opened device, for this process as the device's user.
struct Opened {
  fs::path name;
  Descriptor folder;
  Descriptor var;
};

Opened openAsItsUser(const Options& options) {
  const Environment caller = callerEnvironment();
  const auto calling = callingAccount(caller);
  Account account = calling ? *calling : accountForFolderOf(0, 0, caller);
  const fs::path device = deviceOf(options, caller, account);
  requireDevice(device);
  const bool isRoot = geteuid() == 0;
  Descriptor folder =
      isRoot ? openFolderForAccount(device, caller, calling.has_value(), account) : openOrMakeFolder(device);
  if (isRoot) become(account);
  Descriptor var = openVar(folder.get(), device);
  return {device, std::move(folder), std::move(var)};
}

std::string called(Kept kind, const std::string& name) {
  const char* what = kind == Kept::Backup ? "the backup " : kind == Kept::Packages ? "the packages of " : "";
  return what + visible(name);
}

// A few of the names, in one line.
std::string listed(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), kNamedAtMost); ++i)
    text.append(i == 0 ? "" : ", ").append(visible(names[i]));
  return names.size() > kNamedAtMost ? text + " and more" : text;
}

bool isNotKept(const HistoryEntry& entry, Kept kind, const std::string& name) {
  const std::string path = std::string(folderInHistory(kind)) + "/" + visible(name) + " ";
  return std::any_of(entry.remarks.begin(), entry.remarks.end(),
                     [&](const std::string& remark) { return remark.starts_with(path); });
}

// Remarks begin with a path: KIND/NAME and what is in it.
bool isAbout(const std::string& remark, const std::string& name) {
  const std::size_t begin = remark.find('/') + 1;
  return begin == 0 || (remark.compare(begin, name.size(), name) == 0 &&
                        (remark[begin + name.size()] == '/' || remark[begin + name.size()] == ' '));
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
      const auto inIt = *folder ? namesIn(folder->get()) : std::nullopt;
      for (const auto& name : inIt.value_or(std::vector<std::string>()))
        names[name] |= folder == &after ? 2 : 1;
    }
    for (const auto& [name, where] : names) {
      if (!only.empty() && name != only) continue;
      std::string change = called(kind, name);
      if (entry.isSetAside)
        change += " was set aside";
      else if (where == 1)
        change += isNotKept(entry, kind, name) ? " was not kept" : " is gone";
      else if (where == 2)
        change += older != nullptr ? " is new" : " is there";
      else {
        const Descriptor then = openFolderBeneath(before.get(), name);
        const Descriptor now = openFolderBeneath(after.get(), name);
        const auto different =
            then && now ? differences(then.get(), now.get(), kNamedAtMost + 1) : std::vector<std::string>();
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
    throw Refusal("There is none of " + visible(when) + "; see \"tweakbench history NAME\".");
  if (meant.size() > 1) {
    std::vector<std::string> names;
    for (const auto& entry : meant) names.push_back(localName(entry.when));
    throw Refusal(visible(when) + " may be " + listed(names) + "; give more of it.");
  }
  return meant.front();
}

int bringBack(const Options& options) {
  const Opened device = openAsItsUser(options);
  const HistoryFolder history(device.folder.get());
  const fs::path path = fs::path(folderInHistory(options.kept)) / options.project;
  const auto entries = entriesWith(history, path);
  const std::string what = called(options.kept, options.project);
  if (entries.empty()) throw Refusal("The history does not have " + what + ".");
  const fs::path place = folderInDevice(options.kept);
  const Descriptor present = openFolderBeneath(device.var.get(), place / options.project);
  const HistoryEntry entry = choose(history, entries, options.when, path, present.get());
  const Rights own = Rights::own();
  const Interruption interruption;
  const Transfer transfer{device.name,
                          Descriptor(dup(device.folder.get())),
                          Descriptor(dup(device.var.get())),
                          own,
                          own,
                          022,
                          Interruption::check};
  const Transferred done = copyBack(transfer, history.open(entry, path).get(), place, options.project);
  tellLeftOut("they cannot be read or are not files", done.leftOut);
  for (const auto& remark : entry.remarks) {
    if (remark.starts_with(visible(path.string())))
      std::cerr << "tweakbench: Not in the history: " << remark << "\n";
  }
  const std::string time = localName(entry.when);
  std::cout << (options.kept == Kept::Project ? "The project " + what : what) << " of " << time;
  if (done.what == options.project)
    std::cout << " is in the device";
  else
    std::cout << " is in the device as " << visible(done.what) << ", since " << visible(options.project)
              << " is there already";
  std::cout << "; it comes without " << folderLeftOut << ".\n" << std::flush;
  return std::cout ? 0 : kFailed;
}

}  // namespace

int showHistory(const Options& options) {
  const Opened device = openAsItsUser(options);
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
      if (options.project.empty() || isAbout(remark, visible(options.project)))
        std::cout << kIndent << "not kept: " << remark << "\n";
    }
    std::cout << std::flush;
    // Whoever reads has seen enough.
    if (!std::cout) return kFailed;
  }
  if (isAny) return 0;
  std::cerr << "tweakbench: "
            << (options.project.empty() ? "There is no history yet.\n"
                                        : "The history does not have " + visible(options.project) + ".\n");
  return kNotThere;
}

int restore(const Options& options) {
  try {
    return bringBack(options);
  } catch (const Interrupted& interrupted) {
    raise(interrupted.signal);
    return kNotThere;
  } catch (const Refusal& refusal) {
    std::cerr << "tweakbench: " << refusal.what() << "\n";
    return kNotThere;
  }
}

}  // namespace device
