#include "device/DeviceFolder.h"

#include "device/Beneath.h"
#include "device/ProgramLinks.h"
#include "device/Refusal.h"
#include "device/ShippedFiles.h"

#include <algorithm>
#include <fcntl.h>
#include <functional>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace device {
namespace {

namespace fs = std::filesystem;

constexpr const char* kRoot = "root";
constexpr const char* kUnfinishedRoot = "root.new";
constexpr const char* kApplicationFolder = "Tweakbench.app";
constexpr const char* kPreferencesFolder = "mobile/Library/Preferences";
constexpr const char* kPreferences = "com.apple.springboard.plist";

void makeFolder(int parent, const std::string& name) {
  if (mkdirat(parent, name.c_str(), 0755) != 0)
    refuseWithError("The device's folder " + name + " could not be made:");
}

std::string preferencesWithLocale(const std::string& locale) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<plist version=\"1.0\">\n<dict>\n\t<key>XBRecentLocale</key>\n\t<string>" +
         locale + "</string>\n</dict>\n</plist>\n";
}

std::string when(const timespec& time) {
  return std::to_string(time.tv_sec) + "." + std::to_string(time.tv_nsec);
}

// Changes whenever the host's programs or the folder's entries do: a program in the device can set the
// folder's modification time, but not its change time.
std::string stateOfLinks(int folder) {
  struct stat host {};
  struct stat own {};
  if (stat("/usr/bin", &host) != 0 || fstat(folder, &own) != 0) return {};
  return when(host.st_mtim) + " " + when(own.st_ctim) + " " + std::to_string(own.st_ino);
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
  Descriptor folder(::open(whole.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!folder) refuseWithError("The device " + whole.string() + " could not be opened:");
  return folder;
}

DeviceFolder::DeviceFolder(Descriptor folder, const fs::path& name, const DeviceContents& contents)
    : folder_(std::move(folder)), name_(name) {
  struct stat status {};
  if (fstat(folder_.get(), &status) != 0 || status.st_uid != geteuid()) {
    throw Refusal("The device " + name_.string() + " belongs to another user (number " +
                  std::to_string(status.st_uid) + ").");
  }
  lock();
  make(contents);
  open();
  refresh(contents);
}

void DeviceFolder::lock() {
  const auto names = namesIn(folder_.get());
  if (!names) refuseWithError("The device " + name_.string() + " could not be read:");
  const bool isForeign = std::any_of(names->begin(), names->end(), [](const std::string& name) {
    return name != "lock" && name != kRoot && name != kUnfinishedRoot;
  });
  if (isForeign && std::find(names->begin(), names->end(), kRoot) == names->end()) {
    throw Refusal("The folder " + name_.string() +
                  " holds other files and is no device; give --device a new folder.");
  }
  lock_ = Descriptor(openat(folder_.get(), "lock", O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!lock_) refuseWithError("The device " + name_.string() + " could not be locked:");
  if (flock(lock_.get(), LOCK_EX | LOCK_NB) == 0) return;
  if (errno != EWOULDBLOCK) refuseWithError("The device " + name_.string() + " could not be locked:");
  throw Refusal("The device " + name_.string() + " is in use by another Tweakbench; close that one first.");
}

void DeviceFolder::make(const DeviceContents& contents) {
  if (faccessat(folder_.get(), kRoot, F_OK, AT_SYMLINK_NOFOLLOW) == 0) return;
  // What a killed start left: no program in a device has ever seen it.
  fs::remove_all("/proc/self/fd/" + std::to_string(folder_.get()) + "/" + kUnfinishedRoot);
  makeFolder(folder_.get(), kUnfinishedRoot);
  const Descriptor root = openFolderBeneath(folder_.get(), kUnfinishedRoot);
  for (const char* top : {"Applications", "var", "usr-bin", "bin", "shipped"}) makeFolder(root.get(), top);
  const Descriptor var = openFolderBeneath(root.get(), "var");
  if (!makeFolderBeneath(var.get(), kPreferencesFolder))
    refuseWithError("The device's folders could not be made:");
  const Descriptor preferences = openFolderBeneath(var.get(), kPreferencesFolder);
  if (!writeAtomically(preferences.get(), kPreferences, preferencesWithLocale(contents.locale), 0644)) {
    refuseWithError("The device's preferences could not be written:");
  }
  const auto links = hostProgramLinks();
  for (const char* programs : {"usr-bin", "bin"}) {
    putLinks(openFolderBeneath(root.get(), programs).get(), links);
  }
  makeFolder(root.get(), std::string("Applications/") + kApplicationFolder);
  shipFiles(contents.ownFiles / kApplicationFolder,
            openFolderBeneath(root.get(), std::string("Applications/") + kApplicationFolder).get(),
            openFolderBeneath(root.get(), "shipped").get(), ApplicationFolder::New);
  if (renameat(folder_.get(), kUnfinishedRoot, folder_.get(), kRoot) != 0) {
    refuseWithError("The device " + name_.string() + " could not be made:");
  }
}

Descriptor DeviceFolder::openTop(const char* folder) const {
  Descriptor opened(openat(root_.get(), folder, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat status {};
  if (!opened || fstat(opened.get(), &status) != 0 || !S_ISDIR(status.st_mode) ||
      status.st_uid != geteuid()) {
    throw Refusal("The device " + name_.string() + " is damaged: " + folder + " is no folder of its user's.");
  }
  // A build may have closed it; nothing in the device can put something else in its place.
  if ((status.st_mode & S_IRWXU) != S_IRWXU) fchmodat(root_.get(), folder, 0755, 0);
  return opened;
}

void DeviceFolder::open() {
  root_ = openFolderBeneath(folder_.get(), kRoot);
  if (!root_) refuseWithError("The device " + name_.string() + " could not be opened:");
  applications_ = openTop("Applications");
  var_ = openTop("var");
  userPrograms_ = openTop("usr-bin");
  shellPrograms_ = openTop("bin");
}

void DeviceFolder::refresh(const DeviceContents& contents) {
  // A build may have removed these, or put links in their place, which then stay what they are.
  for (const char* folder : {"mobile/Documents", "mobile/Library/Preferences", "tmp"}) {
    makeFolderBeneath(var_.get(), folder);
  }
  for (const char* programs : {"usr-bin", "bin"}) {
    const Descriptor folder = openFolderBeneath(root_.get(), programs);
    const std::string record = std::string(programs) + ".state";
    const std::string state = stateOfLinks(folder.get());
    if (!state.empty() && readBeneath(root_.get(), record, 4096) == state) continue;
    putLinks(folder.get(), hostProgramLinks());
    writeAtomically(root_.get(), record, stateOfLinks(folder.get()), 0644);
  }
  const bool isNew = mkdirat(applications_.get(), kApplicationFolder, 0755) == 0;
  const Descriptor application = openFolderBeneath(applications_.get(), kApplicationFolder);
  // A link in its place is left to the application, which finds no lists then.
  if (!application) return;
  shipFiles(contents.ownFiles / kApplicationFolder, application.get(),
            openFolderBeneath(root_.get(), "shipped").get(),
            isNew ? ApplicationFolder::New : ApplicationFolder::Kept);
}

}  // namespace device
