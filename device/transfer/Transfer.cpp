#include "device/transfer/Transfer.h"

#include "device/Refusal.h"
#include "device/Visible.h"
#include "device/folder/Beneath.h"
#include "device/folder/Packages.h"
#include "device/guard/Contract.h"

#include <algorithm>
#include <fcntl.h>
#include <sstream>
#include <sys/file.h>
#include <sys/stat.h>

namespace {

constexpr std::size_t longestMakefile = 1 << 20;

fs::path pathOnHost(int folder) {
  return fs::read_symlink(pathOf(folder));
}

bool isWithin(const fs::path& path, const fs::path& folder) {
  return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
}

Descriptor openHostFolder(const fs::path& path) {
  return orRefuse(Descriptor(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
                  visible(path.string()) + " cannot be opened as a folder:");
}

// The device's contents are reached by descriptors only, never by a path of the host.
void requireOutside(int folder, const fs::path& path, const fs::path& device) {
  std::error_code error;
  const fs::path whole = fs::weakly_canonical(device, error);
  if (isWithin(pathOnHost(folder), whole)) {
    throw Refusal(visible(path.string()) + " is in the device; use a folder outside it.");
  }
}

fs::path withoutTrailingSlash(const fs::path& path) {
  return path.has_filename() ? path : path.parent_path();
}

// The last component as it was typed, or where that names no entry, the folder's own name.
std::string nameOf(int folder, const fs::path& typed) {
  const std::string name = withoutTrailingSlash(typed).filename();
  const bool isEntry = !name.empty() && name != "." && name != "..";
  return isEntry ? name : pathOnHost(folder).filename().string();
}

// A new folder under a name of its own, which gets its real name when everything is in it, or is deleted.
class Unfinished {
 public:
  // `name` is the beginning of the folder's own.
  Unfinished(int parent, const std::string& name, const Rights& rights) : parent_(parent), rights_(rights) {
    rights_.assume();
    std::string path = pathOf(parent_) + "/" + name + "XXXXXX";
    if (mkdtemp(path.data()) == nullptr) refuseWithError("The copy could not be made:");
    name_ = fs::path(path).filename();
    folder_ = orRefuse(openFolderBeneath(parent_, name_), "The copy could not be made:");
    // A start of the device clears away what nobody locks.
    flock(folder_.get(), LOCK_EX | LOCK_NB);
  }
  ~Unfinished() {
    if (!folder_) return;
    try {
      rights_.assume();
      std::error_code left;
      // Works on descriptors below the first folder.
      fs::remove_all(fs::path(pathOf(parent_)) / name_, left);
    } catch (const Refusal&) {
    }
  }

  int folder() const { return folder_.get(); }

  void finish(int parent, const std::string& name, mode_t mode) {
    rights_.assume();
    if (fchmod(folder_.get(), mode) != 0 || !renameToNew(parent_, name_, parent, name)) {
      if (errno == EEXIST || errno == ENOTEMPTY) throw Refusal(visible(name) + " is there already.");
      refuseWithError("The copy could not be named " + visible(name) + ":");
    }
    folder_.close();
  }

  // The same where something has that name, which is kept in the entry `when` of the history.
  void replace(int parent, const std::string& name, mode_t mode, const HistoryFolder& history,
               const std::string& when) {
    rights_.assume();
    if (fchmod(folder_.get(), mode) != 0) refuseWithError("The copy could not be made:");
    history.replace(parent, name, parent_, name_, when, fs::path(folderInHistory(Kept::Project)) / name);
    folder_.close();
  }

 private:
  int parent_;
  std::string name_;
  const Rights& rights_;
  Descriptor folder_;
};

Descriptor makeInDevice(const Transfer& transfer, const fs::path& folder) {
  transfer.inDevice.assume();
  return orRefuse(makeFolderBeneath(transfer.var.get(), folder),
                  "The device's folder /var/" + folder.string() + " cannot be opened:");
}

// Adds the project's packages from outside it to a copy that has none. Returns what is left out.
std::vector<std::string> addPackages(const Transfer& transfer, const std::string& name, int copy) {
  transfer.host.assume();
  if (exists(copy, ownPackages)) return {};
  transfer.inDevice.assume();
  const Descriptor from = openFolderBeneath(transfer.var.get(), fs::path(packagesFolder) / name);
  if (!from && errno == ENOENT) return {};
  // A build may have put anything there; the project goes out without it.
  if (!from) return {ownPackages};
  transfer.host.assume();
  const Descriptor to = orRefuse(makeFolderBeneath(copy, ownPackages), "The packages could not be written:");
  auto leftOut = copyTree({from.get(), transfer.inDevice}, {to.get(), transfer.host},
                          {CopiedLinks::Inside, transfer.umask, transfer.pause});
  transfer.host.assume();
  if (fchmod(to.get(), 0777 & ~transfer.umask) != 0) refuseWithError("The packages could not be written:");
  for (auto& each : leftOut) each = std::string(ownPackages).append("/").append(each);
  return leftOut;
}

// Moves the packages of a project that comes in to where builds of the application put them: a failed build
// would take those in the project for its own. Packages of the same names that are there already
// stay instead. Returns what is left out.
std::vector<std::string> movePackages(const Transfer& transfer, const std::string& name, int from) {
  const Descriptor to = makeFolderBeneath(transfer.var.get(), fs::path(packagesFolder) / name);
  std::vector<std::string> leftOut;
  for (const auto& each : namesInOrNone(from)) {
    if (!to || !renameToNew(from, each, to.get(), each))
      leftOut.push_back(std::string(ownPackages).append("/").append(each));
  }
  return leftOut;
}

// An assignment of THEOS in a Makefile that counts whatever the environment says.
struct FixedTheos {
  // Counted from 1.
  int line;
  // As the Makefile has it, comment and blanks aside.
  std::string place;
};

// What the line of a Makefile sets THEOS to; absent where it sets something else, or leaves THEOS to the
// environment ("?=").
std::optional<std::string_view> theosSetIn(std::string_view line) {
  const auto skip = [&line](std::string_view word) {
    if (!line.starts_with(word)) return false;
    line = trimmed(line.substr(word.size()), " \t");
    return true;
  };
  while (skip("export ") || skip("export\t") || skip("override ") || skip("override\t")) {
  }
  if (!skip("THEOS")) return std::nullopt;
  while (skip(":")) {
  }
  return skip("=") ? std::optional(trimmed(line.substr(0, line.find('#')))) : std::nullopt;
}

// The last assignment that always counts; absent where there is none, or only in conditionals. A line that
// begins with a tab is the shell's.
std::optional<FixedTheos> fixedTheos(const std::string& makefile) {
  std::optional<FixedTheos> found;
  int conditionals = 0;
  std::istringstream lines(makefile);
  std::string line;
  for (int number = 1; std::getline(lines, line); ++number) {
    line.erase(0, std::min(line.find_first_not_of(' '), line.size()));
    for (const char* opening : {"ifdef", "ifndef", "ifeq", "ifneq"})
      conditionals += line.starts_with(opening) ? 1 : 0;
    if (line.starts_with("endif") && conditionals > 0) --conditionals;
    const auto place = theosSetIn(line);
    if (conditionals == 0 && place) found = FixedTheos{number, std::string(*place)};
  }
  return found;
}

// Whether there may be something at `place` in the device. True also for what cannot be known, such as a
// relative path or one with variables of make.
bool mayBeInDevice(const std::string& place, int var) {
  std::string path = place;
  if (path.starts_with('~')) path.replace(0, 1, guard::homeOfCommands);
  for (const char* home : {"$(HOME)", "${HOME}"}) path = replaceAll(path, home, guard::homeOfCommands);
  if (!path.starts_with('/') || path.find('$') != std::string::npos) return true;
  fs::path whole = fs::path(path + "/").lexically_normal().parent_path();
  if (whole.string().starts_with("/private/var/")) whole = whole.string().substr(8);
  if (whole == "/opt/theos") return true;
  if (whole.string().starts_with("/usr/")) return access(whole.c_str(), F_OK) == 0;
  if (!whole.string().starts_with("/var/")) return false;
  // Where a link leads is the device's own affair.
  const Descriptor above =
      openBeneath(var, whole.parent_path().lexically_relative("/var"), O_PATH | O_DIRECTORY);
  return above ? exists(above.get(), whole.filename()) : errno == ELOOP;
}

// What keeps a project that comes in from building.
std::string warningAbout(const Transfer& transfer, int project) {
  for (const char* name : {"GNUmakefile", "makefile", "Makefile"}) {
    const auto makefile = readBeneath(project, name, longestMakefile);
    if (!makefile) continue;
    const auto fixed = fixedTheos(*makefile);
    if (!fixed || mayBeInDevice(fixed->place, transfer.var.get())) break;
    return "Line " + std::to_string(fixed->line) + " of its " + name + " sets THEOS to " +
           visible(fixed->place) +
           ", which is not in the device: no build will find Theos. With \"THEOS ?=\" the project builds "
           "here and there.";
  }
  return {};
}

}  // namespace

Transferred importProject(const Transfer& transfer, const fs::path& source, Existing existing) {
  transfer.host.assume();
  const Descriptor from = openHostFolder(source);
  const std::string name = nameOf(from.get(), source);
  requireProjectName(name);
  requireOutside(from.get(), source, transfer.device);
  std::error_code error;
  if (isWithin(fs::weakly_canonical(transfer.device, error), pathOnHost(from.get()))) {
    throw Refusal(visible(source.string()) +
                  " contains the device, so a copy would never end; copy another folder.");
  }
  const Descriptor projects = makeInDevice(transfer, projectsFolder);
  const Descriptor beside = makeInDevice(transfer, besideProjects);
  const bool isReplaced = exists(projects.get(), name);
  if (isReplaced && existing == Existing::Refused)
    throw Refusal("There is a project " + name + " in the device already; import --replace replaces it.");
  Transferred done{name};
  Unfinished copy(beside.get(), ".import-", transfer.inDevice);
  done.leftOut = copyTree({from.get(), transfer.host}, {copy.folder(), transfer.inDevice},
                          {CopiedLinks::All, 022, transfer.pause});
  transfer.inDevice.assume();
  done.warning = warningAbout(transfer, copy.folder());
  // Out of the project before it is there.
  const Unfinished aside(beside.get(), ".import-", transfer.inDevice);
  const bool hasPackages = openFolderBeneath(copy.folder(), ownPackages) &&
                           renameat(copy.folder(), ownPackages, aside.folder(), ownPackages) == 0;

  std::optional<HistoryFolder> history;
  if (existing == Existing::Replaced) history.emplace(transfer.folder.get());
  const std::string when = history ? history->newName() : std::string();
  if (isReplaced) {
    copy.replace(projects.get(), name, 0755, *history, when);
    done.kept = transfer.device / "history/set-aside" / when;
  } else {
    copy.finish(projects.get(), name, 0755);
  }
  if (!hasPackages) return done;
  const Descriptor built = openFolderBeneath(transfer.var.get(), packagesFolder);
  if (history && built && exists(built.get(), name)) {
    history->replace(built.get(), name, aside.folder(), ownPackages, when,
                     fs::path(folderInHistory(Kept::Packages)) / name);
    done.kept = transfer.device / "history/set-aside" / when;
  } else {
    const Descriptor packages = openFolderBeneath(aside.folder(), ownPackages);
    for (auto& each : movePackages(transfer, name, packages.get())) done.leftOut.push_back(std::move(each));
  }
  return done;
}

Transferred copyBack(const Transfer& transfer, int source, const fs::path& place, const std::string& name) {
  const Descriptor target = makeInDevice(transfer, place);
  const Descriptor beside = makeInDevice(transfer, besideProjects);
  Unfinished copy(beside.get(), ".import-", transfer.inDevice);
  CopyRules rules{CopiedLinks::All, 022, transfer.pause};
  rules.unreadable = CopyRules::Unreadable::LeftOut;
  auto leftOut = copyTree({source, transfer.host}, {copy.folder(), transfer.inDevice}, rules);
  std::string free = name;
  for (int number = 1; exists(target.get(), free); ++number) free = name + "-" + std::to_string(number);
  copy.finish(target.get(), free, 0755);
  return {free, std::move(leftOut)};
}

Transferred exportProject(const Transfer& transfer, const std::string& name, const fs::path& target) {
  transfer.inDevice.assume();
  const Descriptor from = openProject(transfer.var.get(), name);
  transfer.host.assume();
  std::error_code error;
  const bool isFolder = fs::is_directory(target, error);
  const fs::path whole = withoutTrailingSlash(target);
  // As typed: behind a link, ".." is not what the text says.
  const fs::path above = whole.has_parent_path() ? whole.parent_path() : ".";
  const fs::path parent = isFolder ? target : above;
  const std::string copyName = isFolder ? name : whole.filename().string();
  requireEntryName(copyName);
  const Descriptor into = openHostFolder(parent);
  requireOutside(into.get(), parent, transfer.device);
  if (exists(into.get(), copyName))
    throw Refusal(visible((parent / copyName).string()) + " is there already.");
  Unfinished copy(into.get(), "." + copyName + ".export-", transfer.host);
  auto leftOut = copyTree({from.get(), transfer.inDevice}, {copy.folder(), transfer.host},
                          {CopiedLinks::Inside, transfer.umask, transfer.pause});
  for (auto& each : addPackages(transfer, name, copy.folder())) leftOut.push_back(std::move(each));
  copy.finish(into.get(), copyName, 0777 & ~transfer.umask);
  return {(pathOnHost(into.get()) / copyName).string(), std::move(leftOut)};
}
