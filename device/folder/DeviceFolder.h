// The device's folder on the host: made, kept in order, locked and opened for the launcher.
//
//   DEVICE/lock               held by the launchers that use the device: by one alone while it puts the
//   folder
//                             in order, then shared
//   DEVICE/window, .lock      of the launcher that has the window (SingleWindow.h)
//   DEVICE/log.*              sockets of the launchers' system logs (SystemLog.h)
//   DEVICE/Applications, var  shown as they are, writable
//   DEVICE/usr-bin            shown as /usr/bin, writable
//   DEVICE/theos-lib          shown as /opt/theos/lib, writable
//   DEVICE/bin                shown as /bin, read-only
//   DEVICE/history            earlier states of projects; not shown (HistoryFolder.h)
//   DEVICE/shipped            what was last put into the application folder; not shown
//   DEVICE/*.state            what the folders of links and the preferences were made from; not shown
//
// What is below Applications, var, usr-bin and theos-lib was written by programs in the device and is
// hostile: it is reached through descriptors only, never by following a link.
#pragma once

#include "device/sandbox/Arguments.h"

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>

// Opens the folder of a device, which is made where missing, parents too. Throws Refusal.
Descriptor openOrMakeFolder(const fs::path& path);

// The same for the caller's device. As root, settles the account, to which the folder belongs afterwards.
// Throws Refusal, also for a folder of root's files.
Descriptor openDevice(Caller& caller);

// Opens DEVICE/var for copying in and out, whether or not a launcher uses the device at the time, and makes
// it where missing. To be used as the device's user. Throws Refusal, also if the folder is not a device.
Descriptor openVar(int folder, const fs::path& name);

// A device, locked for this process as long as the object lives, so that nobody puts it in order meanwhile.
// To be used as the device's user, with umask 022.
class DeviceFolder {
 public:
  // Locks the device in `folder` and opens its folders, made where missing. `name` is what messages call the
  // device. Throws Refusal.
  DeviceFolder(Descriptor folder, const fs::path& name);

  // If nothing else uses the device, makes what is missing in the folders: everything the first time, the
  // rest after a start that was killed or a build that removed it. `ownFiles` are Tweakbench's own files on
  // the host. `locale` is for the device's preferences, as long as they have none or the one that was written
  // last; absent keeps the preferences. To be called before share(). Throws Refusal.
  void complete(const fs::path& ownFiles, const std::optional<std::string>& locale);

  // Whether nothing else runs in the device yet, nor will before share().
  bool isAlone() const { return isAlone_; }
  // From now on other launchers may use the device, too.
  void share();

  // DEVICE itself.
  int folder() const { return folder_.get(); }
  // They can be mounted as they are.
  const MountedFolders& folders() const { return folders_; }

  // Where somebody deleted the device while it was used, and something was made there meanwhile: makes what
  // is left a device again, which the next start completes.
  void remainDevice() const;

 private:
  // Returns whether nobody else uses the device.
  bool lock();
  void removeLeftovers();
  // Moves the entry `name` of `parent`, which messages call `shown`, into the history, and says so.
  void setAside(int parent, const fs::path& shown, const std::string& name);
  // Makes the folder `path` below `top` where missing, with what is in its way set aside and what was closed
  // opened. True where it is new.
  bool repairFolder(int top, const fs::path& shown, const fs::path& path);
  void replaceOverfullPrograms();
  void refreshPreferences(const std::string& locale) const;
  void refreshLinks(const std::string& programs);
  void refreshApplication(const fs::path& shipped);

  Descriptor folder_;
  fs::path name_;
  Descriptor lock_;
  bool isAlone_ = false;
  MountedFolders folders_;
  // The history's entry for what this start sets aside, once there is some, and how much that was.
  std::string setAsideEntry_;
  std::size_t setAsideCount_ = 0;
};

// The one shipped file that does not stay in the application folder: the application moves it to /usr/bin.
inline constexpr const char* converter = "ftt";

// Copies the shipped files of `source` into the device's folder `application`, all of them where it is new.
// `record` is a folder outside the device with what was shipped before: a file that the user or a build has
// changed or removed stays so, and an unchanged one is updated, like an unchanged converter in `programs`,
// the device's /usr/bin. Throws Refusal.
void shipFiles(const fs::path& source, int application, int programs, int record, bool isNew);

// Name to target: every host program, with `sh` being the guard.
std::map<std::string, std::string> hostProgramLinks(const fs::path& programs = "/usr/bin");

// Moves an entry of the folder out of the way.
using SetAside = std::function<void(const std::string& name)>;

// Puts the links into `folder`. Restores links that are missing or changed, replacing what is in their place
// (a folder is set aside), removes links to host programs that are gone, and keeps everything else. Follows
// no link in `folder`, to which programs in the device write. Returns how many links could not be made.
// Throws Refusal if the folder cannot be read.
std::size_t putLinks(int folder, const std::map<std::string, std::string>& links, const SetAside& setAside);

// Puts a link into `folder` for each entry of Theos's folder lib, `libraries`, which the device sees at
// `shown`, and removes links to entries that are gone. Keeps what builds put there, also instead of the
// host's. Follows no link in `folder`. Skips links that cannot be made.
void putLibraryLinks(int folder, const fs::path& libraries, const std::string& shown = "/.host/theos/lib");
