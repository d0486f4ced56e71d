// What the launcher puts into the device's folders: shipped files, and links to the host's programs and to
// the libraries of Theos.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>

namespace device {

enum class ApplicationFolder { New, Kept };

// The device's folders that shipped files come into.
struct ShippedTo {
  int application = -1;
  // The device's /usr/bin, where the application moves the converter. It gets none from here; the one that is
  // there is only renewed. -1 where there is none.
  int programs = -1;
};

// Brings the shipped files of `source` into the device. `record` is a folder out of the device's reach that
// keeps what was shipped before, so that a file that the user or a build has changed or removed is left
// alone, while one that is as it was shipped becomes the new one. A New folder gets every file. Throws
// Refusal.
void shipFiles(const std::filesystem::path& source, const ShippedTo& device, int record,
               ApplicationFolder state);

// Name to target: every host program, with `sh` being the guard.
std::map<std::string, std::string> hostProgramLinks(const std::filesystem::path& programs = "/usr/bin");

// Moves an entry of the folder out of the way.
using SetAside = std::function<void(const std::string& name)>;

// Puts the links into `folder`. A link that is missing or was changed is made again, and what is in its place
// is replaced (a folder is set aside); a link to a host program that is gone is removed; everything else
// stays. `folder` is written by programs in the device: no link in it is followed. Returns how many links
// could not be made. Throws Refusal where the folder cannot be read.
std::size_t putLinks(int folder, const std::map<std::string, std::string>& links, const SetAside& setAside);

// Puts a link for each entry of Theos's folder lib, `libraries`, which the device sees at `shown`, into
// `folder`, and removes links to entries that are gone. What builds put there stays, also in place of the
// host's. `folder` is written by programs in the device: no link in it is followed. What cannot be made is
// left out.
void putLibraryLinks(int folder, const std::filesystem::path& libraries,
                     const std::string& shown = "/.host/theos/lib");

}  // namespace device
