// What a URL from the device may ask for: nothing but folders of the device and pages for the browser.
#pragma once

#include <string>
#include <string_view>

namespace device {

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

}  // namespace device
