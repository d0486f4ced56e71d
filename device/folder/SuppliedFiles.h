// What the launcher puts into the device's folders: shipped files, and links to the host's programs and to
// the libraries of Theos.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>

namespace fs = std::filesystem;

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
