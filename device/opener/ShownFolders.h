// Folders of the device under paths of the host's that nothing in the device can lead astray.
#pragma once

#include "core/Descriptor.h"

#include <deque>
#include <filesystem>
#include <string>
#include <sys/types.h>

namespace device {

// A program outside that is given the device's own path would resolve it again, and a build may have put a
// file or a link in the folder's place by then. The paths given out here lead to the folder that was opened,
// whatever becomes of its name: links to this process's open descriptors, in a folder of its own below
// `temporary`. They hold as long as the object does.
class ShownFolders {
 public:
  // Removes what others of this user's left there whose process is gone.
  explicit ShownFolders(std::filesystem::path temporary = "/tmp");
  ~ShownFolders();
  ShownFolders(const ShownFolders&) = delete;
  ShownFolders& operator=(const ShownFolders&) = delete;

  // The path for `folder`; the same folder gets the same path. Its last component is `name`, or another word
  // where that is no plain name, since builds choose it and file managers and their scripts read it. Empty
  // where no path could be made. The oldest of many folders is given up.
  std::filesystem::path show(Descriptor folder, const std::string& name);

 private:
  struct Shown {
    Descriptor folder;
    dev_t device;
    ino_t number;
    std::filesystem::path path;
  };
  bool makePlace();
  void forget(const Shown& shown);

  std::filesystem::path temporary_;
  std::filesystem::path place_;
  // Locked as long as the process lives, so that others leave the place alone.
  Descriptor lock_;
  std::deque<Shown> shown_;
  int count_ = 0;
};

}  // namespace device
