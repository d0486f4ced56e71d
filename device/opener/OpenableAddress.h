// What a URL from the device may ask for: folders of the device and pages for the browser, nothing else; and
// paths for such folders that nothing in the device can lead astray.
#pragma once

#include "core/Descriptor.h"

#include <deque>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/types.h>

struct OpenableAddress {
  enum class Kind {
    Refused,
    // A folder below the device's /var.
    FolderOfVar,
    // A folder below the device's /Applications.
    FolderOfApplications,
    // For the opener program.
    Page,
  };
  Kind kind = Kind::Refused;
  // Folders: the path below /var or /Applications, "." for these themselves. Page: the URL; within
  // quotes of either kind it is nothing but text to a shell.
  std::string value;
  // Refused: why, in a few words.
  std::string reason;
};

// Looks at the text alone; whether a folder exists, and where its path really leads, is for who opens it.
OpenableAddress readAddress(std::string_view url);

// A program on the host that gets the device's own path would resolve it again, and by then a build may have
// put a file or a link in the folder's place. These paths lead to the folder that was opened: they are links
// to this process's open descriptors, each in a folder of its own below `temporary`. They are valid as long
// as the object.
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
  static void forget(const Shown& shown);

  std::filesystem::path temporary_;
  std::deque<Shown> shown_;
};
