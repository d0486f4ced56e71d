// The device's folder on the host: made, kept in order, locked and opened for the launcher.
//
//   DEVICE/lock          held by the launcher that uses the device
//   DEVICE/root/         the device; appears whole or not at all
//     Applications var   shown as they are, writable
//     usr-bin            shown as /usr/bin, writable
//     bin                shown as /bin, read-only
//     shipped            what was last put into the application folder; not shown
//
// What is below Applications, var and usr-bin was written by programs in the device and is hostile: it is
// reached through descriptors only, never by following a link.
#pragma once

#include "device/Descriptor.h"

#include <filesystem>
#include <string>
#include <sys/types.h>

namespace device {

// Opens the folder of a device, which is made where missing, parents too. Throws Refusal.
Descriptor openOrMakeFolder(const std::filesystem::path& path);

struct DeviceContents {
  // Tweakbench's own files on the host, with the application folder as it is shipped.
  std::filesystem::path ownFiles;
  // For the device's preferences, when it is made.
  std::string locale;
};

// A device, locked for this process as long as the object lives. To be used as the device's user, with umask
// 022.
class DeviceFolder {
 public:
  // Locks the device in `folder`, makes it if it is new, and puts in order what a start needs. `name` is what
  // messages call it. Throws Refusal, also where another launcher holds the lock.
  DeviceFolder(Descriptor folder, const std::filesystem::path& name, const DeviceContents& contents);

  // Opened O_PATH, owned by this user and no links, so that they can be mounted as they are.
  int applications() const { return applications_.get(); }
  int var() const { return var_.get(); }
  int userPrograms() const { return userPrograms_.get(); }
  int shellPrograms() const { return shellPrograms_.get(); }

 private:
  void lock();
  void make(const DeviceContents& contents);
  void open();
  void refresh(const DeviceContents& contents);
  Descriptor openTop(const char* folder) const;

  Descriptor folder_;
  std::filesystem::path name_;
  Descriptor lock_;
  Descriptor root_;
  Descriptor applications_;
  Descriptor var_;
  Descriptor userPrograms_;
  Descriptor shellPrograms_;
};

}  // namespace device
