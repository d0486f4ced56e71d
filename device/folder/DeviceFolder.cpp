#include "device/folder/DeviceFolder.h"

#include "core/LauncherContract.h"
#include "device/Refusal.h"
#include "device/Visible.h"
#include "device/folder/Beneath.h"
#include "device/folder/Packages.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>

namespace {

constexpr const char* lockName = "lock";
constexpr const char* shippedFolder = "shipped";
constexpr const char* logSocket = "log.";
constexpr const char* userProgramsFolder = "usr-bin";
constexpr const char* shellProgramsFolder = "bin";
constexpr const char* applicationFolder = "Tweakbench.app";
// Names that a start looks through for leftovers, in all folders together; what is behind them stays.
constexpr std::size_t mostSwept = 100'000;
// Many times what a host has.
constexpr std::size_t mostPrograms = 100'000;
// Of what was set aside.
constexpr std::size_t mostNamed = 10;
// Another launcher's set-up has half a minute.
constexpr int lockTries = 1500;
constexpr auto betweenTries = std::chrono::milliseconds(20);
constexpr const char* preferencesFolder = "mobile/Library/Preferences";
constexpr const char* preferencesFile = "com.apple.springboard.plist";
constexpr std::size_t largestPreferences = 1 << 20;
// The locale that was last written into them.
constexpr const char* localeRecord = "locale.state";

// The part of XML preferences that is the locale; absent where they have no such text or several.
std::optional<std::string_view> localeIn(std::string_view preferences) {
  constexpr std::string_view key = "<key>XBRecentLocale</key>";
  constexpr std::string_view opening = "<string>";
  const auto found = preferences.find(key);
  if (found == std::string_view::npos || found != preferences.rfind(key)) return std::nullopt;
  const auto begin = preferences.find_first_not_of(" \t\r\n", found + key.size());
  if (begin == std::string_view::npos || !preferences.substr(begin).starts_with(opening)) return std::nullopt;
  const auto text = preferences.substr(begin + opening.size());
  const auto end = text.find('<');
  return end == std::string_view::npos ? std::nullopt : std::optional(text.substr(0, end));
}

std::string preferencesWithLocale(const std::string& locale) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<plist version=\"1.0\">\n<dict>\n\t<key>XBRecentLocale</key>\n\t<string>" +
         locale + "</string>\n</dict>\n</plist>\n";
}

// Changes whenever the host's programs or the folder's entries do: a program in the device can set the
// folder's modification time, but not its change time.
std::string stateOfLinks(int folder) {
  struct stat host {};
  const struct stat own = statusOf(folder);
  if (stat("/usr/bin", &host) != 0 || own.st_mode == 0) return {};
  return std::to_string(nanoseconds(host.st_mtim)) + " " + std::to_string(nanoseconds(own.st_ctim)) + " " +
         std::to_string(own.st_ino);
}

void refuseForeignFolder(int folder, const fs::path& device) {
  const struct stat status = statusOf(folder);
  if (status.st_mode == 0 || status.st_uid != geteuid()) {
    throw Refusal("The device " + device.string() + " belongs to another user (number " +
                  std::to_string(status.st_uid) + ").");
  }
  const auto names = namesIn(folder);
  if (!names) refuseWithError("The device " + device.string() + " could not be read:");
  if (!names->empty() && std::find(names->begin(), names->end(), lockName) == names->end()) {
    throw Refusal("The folder " + device.string() +
                  " holds other files and is not a device; give --device a new folder.");
  }
}

Descriptor makeLock(int folder) {
  return Descriptor(openat(folder, lockName, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
}

Descriptor openTop(int device, const char* folder, const fs::path& name) {
  mkdirat(device, folder, 0755);
  Descriptor opened(openat(device, folder, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  const struct stat status = statusOf(opened.get());
  if (status.st_mode == 0 || status.st_uid != geteuid()) {
    throw Refusal("The device " + name.string() + " is damaged: " + folder +
                  " is not a folder of its user; move it away, or give --device a new folder.");
  }
  // A build may have closed it; nothing in the device can put something else in its place.
  if ((status.st_mode & S_IRWXU) != S_IRWXU) fchmodat(device, folder, 0755, 0);
  return opened;
}

}  // namespace

Descriptor openOrMakeFolder(const fs::path& path) {
  std::error_code error;
  // Links above the device are the user's own.
  const fs::path whole = fs::weakly_canonical(fs::absolute(path), error);
  if (error) throw Refusal("The device " + path.string() + " cannot be reached: " + error.message() + ".");
  fs::path sofar;
  for (const auto& part : whole) {
    sofar /= part;
    // Only its owner may look in, as with all data folders.
    if (mkdir(sofar.c_str(), 0700) != 0 && errno != EEXIST && errno != EROFS && errno != EACCES) {
      refuseWithError("The device " + whole.string() + " could not be made:");
    }
  }
  return orRefuse(Descriptor(open(whole.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)),
                  "The device " + whole.string() + " could not be opened:");
}

Descriptor openDevice(Caller& caller) {
  const fs::path& path = caller.device;
  if (geteuid() != 0) return openOrMakeFolder(path);
  Descriptor folder;
  if (caller.isSettled) {
    // Below the user's own home, folders are made with the user's own rights.
    const Rights root = Rights::own();
    Rights(caller.account.user, caller.account.group).assume();
    try {
      folder = openOrMakeFolder(path);
    } catch (const Refusal&) {
    }
    root.assume();
  }
  if (!folder) folder = openOrMakeFolder(path);
  // In this order: another start may be giving the folder away, and puts things into it afterwards.
  std::error_code unreadable;
  const bool isEmpty = fs::is_empty(pathOf(folder.get()), unreadable);
  const struct stat status = statusOf(folder.get());
  if (!caller.isSettled)
    caller.account = accountForFolderOf(status.st_uid, status.st_gid, caller.environment);
  if (status.st_uid == 0) {
    if (!isEmpty) {
      throw Refusal("The folder " + path.string() + " is root's and not empty; give --device a new folder.");
    }
    // A link that somebody else planted could lead to any empty folder of root's.
    const Descriptor top(open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
    const fs::path typed = fs::absolute(path).lexically_normal().relative_path();
    const Descriptor direct = openBeneath(top.get(), typed, O_PATH | O_DIRECTORY);
    if (!direct || !fs::equivalent(pathOf(direct.get()), pathOf(folder.get()), unreadable)) {
      throw Refusal("The folder " + path.string() +
                    " is root's and reached through a link; give --device its own path.");
    }
    if (fchown(folder.get(), caller.account.user, caller.account.group) != 0)
      refuseWithError("The device could not be given away:");
  }
  return folder;
}

Descriptor openVar(int folder, const fs::path& name) {
  refuseForeignFolder(folder, name);
  // Makes a new folder a device, which the next start completes.
  if (!makeLock(folder) && errno != EROFS)
    refuseWithError("The device " + name.string() + " could not be locked:");
  return openTop(folder, "var", name);
}

DeviceFolder::DeviceFolder(Descriptor folder, const fs::path& name)
    : folder_(std::move(folder)), name_(name) {
  refuseForeignFolder(folder_.get(), name_);
  isAlone_ = lock();
  // Of launchers that were killed.
  for (const auto& entry : namesInOrNone(folder_.get())) {
    if (isAlone_ && entry.starts_with(logSocket)) unlinkat(folder_.get(), entry.c_str(), 0);
  }
  folders_.applications = openTop(folder_.get(), "Applications", name_);
  folders_.var = openTop(folder_.get(), "var", name_);
  folders_.userPrograms = openTop(folder_.get(), userProgramsFolder, name_);
  if (isAlone_) replaceOverfullPrograms();
  folders_.shellPrograms = openTop(folder_.get(), shellProgramsFolder, name_);
  folders_.theosLibraries = openTop(folder_.get(), "theos-lib", name_);
}

void DeviceFolder::complete(const fs::path& ownFiles, const std::optional<std::string>& locale) {
  if (!isAlone_) {
    // All else might be in use.
    if (locale) refreshPreferences(*locale);
    return;
  }
  for (const char* standard : {"mobile/Documents", preferencesFolder, "tmp"})
    repairFolder(folders_.var.get(), "var", standard);
  removeLeftovers();
  if (locale) refreshPreferences(*locale);
  refreshLinks(userProgramsFolder);
  refreshLinks(shellProgramsFolder);
  refreshApplication(ownFiles / applicationFolder);
  if (setAsideCount_ > mostNamed)
    say("So were " + std::to_string(setAsideCount_ - mostNamed) + " more, which are there, too.");
}

bool DeviceFolder::lock() {
  lock_ = orRefuse(makeLock(folder_.get()), "The device " + name_.string() + " could not be locked:");
  if (flock(lock_.get(), LOCK_EX | LOCK_NB) == 0) return true;
  for (int tries = 0; flock(lock_.get(), LOCK_SH | LOCK_NB) != 0; ++tries) {
    if (errno != EWOULDBLOCK) refuseWithError("The device " + name_.string() + " could not be locked:");
    if (tries == lockTries) {
      throw Refusal("The device " + name_.string() +
                    " is being set up by another Tweakbench, which takes too long; end that one first.");
    }
    std::this_thread::sleep_for(betweenTries);
  }
  return false;
}

void DeviceFolder::share() {
  while (flock(lock_.get(), LOCK_SH) != 0 && errno == EINTR) {
  }
  isAlone_ = false;
}

void DeviceFolder::remainDevice() const {
  const auto names = namesIn(folder_.get());
  if (names && !names->empty()) makeLock(folder_.get());
}

// What an application that was killed in the middle of a save left beside the file. Nothing else of the
// device runs while it is locked, so nobody is writing such a file now.
void DeviceFolder::removeLeftovers() {
  std::size_t left = mostSwept;
  const auto list = [&left](const Descriptor& folder) {
    const auto names = namesIn(folder.get(), left);
    if (names || errno == E2BIG) left -= names ? names->size() : left;
    return names.value_or(std::vector<std::string>());
  };
  const auto sweep = [&list](const Descriptor& folder) {
    for (const auto& name : list(folder)) {
      const struct stat status = statusOf(folder.get(), name);
      if (isTemporaryName(name) && S_ISREG(status.st_mode) && status.st_nlink == 1)
        unlinkat(folder.get(), name.c_str(), 0);
    }
  };
  sweep(openFolderBeneath(folders_.applications.get(), applicationFolder));
  // What a killed import left; a living one holds its lock.
  const Descriptor beside = openFolderBeneath(folders_.var.get(), besideProjects);
  for (const auto& name : list(beside)) {
    if (!name.starts_with(".import-")) continue;
    const Descriptor unfinished = openFolderBeneath(beside.get(), name);
    if (unfinished && flock(unfinished.get(), LOCK_EX | LOCK_NB) == 0)
      setAside(beside.get(), fs::path("var") / besideProjects, name);
  }
  const Descriptor projects = openFolderBeneath(folders_.var.get(), projectsFolder);
  for (const auto& name : list(projects)) sweep(openFolderBeneath(projects.get(), name));
}

// Programs in the device may have left anything here. What cannot be read or written stays as it is, and the
// application does without the caller's locale.
void DeviceFolder::refreshPreferences(const std::string& locale) const {
  const Descriptor folder = openFolderBeneath(folders_.var.get(), preferencesFolder);
  if (!folder) return;
  std::string preferences = preferencesWithLocale(locale);
  if (exists(folder.get(), preferencesFile)) {
    const auto present = readBeneath(folder.get(), preferencesFile, largestPreferences);
    const auto value = present ? localeIn(*present) : std::nullopt;
    // Another one was set by the user, for good.
    if (!value || value == locale || value != readBeneath(folder_.get(), localeRecord, largestPreferences))
      return;
    preferences = *present;
    preferences.replace(static_cast<std::size_t>(value->data() - present->data()), value->size(), locale);
  }
  if (writeAtomically(folder.get(), preferencesFile, preferences, 0644))
    writeAtomically(folder_.get(), localeRecord, locale, 0644);
}

// All of one start goes into one entry: a build can put many thousand things in the way.
void DeviceFolder::setAside(int parent, const fs::path& shown, const std::string& name) {
  const fs::path path = shown / name;
  std::string became;
  try {
    setAsideEntry_ = HistoryFolder(folder_.get()).setAside(parent, name, path, setAsideEntry_);
    became = " was in the device's way; it is now " +
             visible((name_ / "history/set-aside" / setAsideEntry_ / path).string()) + ".";
  } catch (const Refusal& refusal) {
    became = std::string(" is in the device's way and could not be set aside: ") + refusal.what();
  }
  if (++setAsideCount_ <= mostNamed) say(visible(path.string()) + became);
}

bool DeviceFolder::repairFolder(int top, const fs::path& shown, const fs::path& path) {
  Descriptor parent = openFolderBeneath(top, ".");
  fs::path sofar = shown;
  bool isNew = false;
  for (const auto& part : path) {
    if (!parent) return false;
    const struct stat status = statusOf(parent.get(), part);
    bool isThere = status.st_mode != 0;
    if (isThere && !S_ISDIR(status.st_mode)) {
      setAside(parent.get(), sofar, part);
      isThere = false;
    }
    isNew = !isThere && mkdirat(parent.get(), part.c_str(), 0755) == 0;
    // A build may have closed it, or left rules for what is made in the folder above. What a killed launcher
    // started may live a moment longer, and must not have a link's target opened.
    const bool isOpen = isThere && (status.st_mode & S_IRWXU) == S_IRWXU;
    const Descriptor found = openBeneath(parent.get(), part, O_PATH | O_DIRECTORY);
    if (found && !isOpen) chmod(pathOf(found.get()).c_str(), 0755);
    parent = openFolderBeneath(parent.get(), part);
    sofar /= part;
  }
  return isNew;
}

// Each start would look at every entry. The converter is the one program that the device needs there.
void DeviceFolder::replaceOverfullPrograms() {
  // Counted before.
  const std::string state = stateOfLinks(folders_.userPrograms.get());
  if (!state.empty() && readBeneath(folder_.get(), std::string(userProgramsFolder) + ".state", 4096) == state)
    return;
  if (namesIn(folders_.userPrograms.get(), mostPrograms) || errno != E2BIG) return;
  const Descriptor before = std::move(folders_.userPrograms);
  setAside(folder_.get(), {}, userProgramsFolder);
  folders_.userPrograms = openTop(folder_.get(), userProgramsFolder, name_);
  if (S_ISREG(statusOf(before.get(), converter).st_mode))
    renameat(before.get(), converter, folders_.userPrograms.get(), converter);
}

void DeviceFolder::refreshLinks(const std::string& programs) {
  const Descriptor folder = openFolderBeneath(folder_.get(), programs);
  const std::string record = programs + ".state";
  const std::string state = stateOfLinks(folder.get());
  if (!state.empty() && readBeneath(folder_.get(), record, 4096) == state) return;
  const std::size_t missing = putLinks(folder.get(), hostProgramLinks(), [&](const std::string& name) {
    setAside(folder.get(), programs, name);
  });
  if (missing > 0) {
    say(std::to_string(missing) + " links to the host's programs could not be made: " + std::strerror(errno) +
        ".");
  }
  writeAtomically(folder_.get(), record, stateOfLinks(folder.get()), 0644);
}

void DeviceFolder::refreshApplication(const fs::path& shipped) {
  mkdirat(folder_.get(), shippedFolder, 0755);
  const bool isNew = repairFolder(folders_.applications.get(), "Applications", applicationFolder);
  const Descriptor application = openFolderBeneath(folders_.applications.get(), applicationFolder);
  if (!application) return;
  const Descriptor programs = openFolderBeneath(folder_.get(), userProgramsFolder);
  shipFiles(shipped, application.get(), programs.get(), openFolderBeneath(folder_.get(), shippedFolder).get(),
            isNew);
}
