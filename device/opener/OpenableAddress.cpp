#include "device/opener/OpenableAddress.h"

#include "core/LauncherContract.h"
#include "core/Text.h"
#include "device/folder/Beneath.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

namespace fs = std::filesystem;

OpenableAddress refused(std::string reason) {
  return {OpenableAddress::Kind::Refused, {}, std::move(reason)};
}

// What a URL is written with; blanks, double quotes, backslashes and most brackets come as %xx.
bool isWrittenAsURL(std::string_view url) {
  return std::all_of(url.begin(), url.end(), [](char character) {
    return character > 0x20 && character < 0x7f &&
           std::string_view("\"<>\\^`{|}").find(character) == std::string_view::npos;
  });
}

// Opener programs are shell scripts more often than not, and may quote badly. What ends single quotes or
// means something within double ones is written as %xx, which leads a browser to the same page.
std::string plainInQuotes(std::string_view url) {
  std::string plain(url);
  for (const auto& [character, written] : {std::pair{"'", "%27"}, {"$", "%24"}, {"(", "%28"}, {")", "%29"}})
    plain = replaceAll(plain, character, written);
  return plain;
}

std::optional<std::string> decoded(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      plain += text[i];
      continue;
    }
    unsigned char byte = 0;
    const auto digits = text.substr(i + 1, 2);
    const char* const end = digits.data() + digits.size();
    if (digits.size() < 2 || std::from_chars(digits.data(), end, byte, 16).ptr != end) return std::nullopt;
    plain += static_cast<char>(byte);
    i += 2;
  }
  return plain;
}

bool hasControls(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < 0x20 || code == 0x7f;
  });
}

// Without a slash at its end or doubled within; absent where it goes up.
std::optional<std::string> relative(std::string_view path) {
  std::string plain;
  while (!path.empty()) {
    const auto slash = std::min(path.find('/'), path.size());
    const std::string_view part = path.substr(0, slash);
    path.remove_prefix(std::min(slash + 1, path.size()));
    if (part == "..") return std::nullopt;
    if (part.empty() || part == ".") continue;
    if (!plain.empty()) plain += '/';
    plain += part;
  }
  return plain.empty() ? "." : plain;
}

OpenableAddress readFolder(std::string_view place) {
  // Both forms are in use: filza:///PATH and filza://view/PATH.
  if (place.starts_with("view/")) place.remove_prefix(4);
  if (place.find_first_of("?#") != std::string_view::npos) return refused("not a path");
  const auto path = decoded(place);
  if (!path || hasControls(*path)) return refused("not a path");
  using Kind = OpenableAddress::Kind;
  for (const auto& [top, kind] : {std::pair{std::string_view("/var"), Kind::FolderOfVar},
                                  std::pair{std::string_view("/private/var"), Kind::FolderOfVar},
                                  std::pair{std::string_view("/Applications"), Kind::FolderOfApplications}}) {
    if (!path->starts_with(top)) continue;
    const std::string_view rest = std::string_view(*path).substr(top.size());
    if (!rest.empty() && rest.front() != '/') continue;
    auto below = relative(rest);
    return below ? OpenableAddress{kind, std::move(*below), {}} : refused("a path that goes up");
  }
  return refused("not a folder of the device's own");
}

constexpr std::size_t mostShown = 32;
constexpr std::string_view placeName = "tweakbench-folders-";

// Letters of any script, and what no shell minds anywhere.
bool isPlainName(const std::string& name) {
  return !name.empty() && name.front() != '-' && name.front() != '.' && isValidUTF8(name) &&
         std::all_of(name.begin(), name.end(), [](unsigned char character) {
           return std::isalnum(character) != 0 || character >= 0x80 ||
                  std::strchr("._+-@", character) != nullptr;
         });
}

// A place whose process has ended, so that nobody holds its lock. Nothing is deleted but links in its
// numbered folders and what is empty then.
void removeIfAbandoned(int temporary, const std::string& name) {
  const Descriptor place = openFolderBeneath(temporary, name);
  struct stat status {};
  if (!place || fstat(place.get(), &status) != 0 || status.st_uid != geteuid()) return;
  if (flock(place.get(), LOCK_EX | LOCK_NB) != 0) return;
  const auto numbered = namesIn(place.get());
  if (!numbered) return;
  for (const auto& number : *numbered) {
    const Descriptor inside = openFolderBeneath(place.get(), number);
    const auto links = inside ? namesIn(inside.get()) : std::nullopt;
    if (!links) continue;
    for (const auto& link : *links) {
      const bool isLink =
          fstatat(inside.get(), link.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode);
      if (isLink) unlinkat(inside.get(), link.c_str(), 0);
    }
    unlinkat(place.get(), number.c_str(), AT_REMOVEDIR);
  }
  unlinkat(temporary, name.c_str(), AT_REMOVEDIR);
}

}  // namespace

OpenableAddress readAddress(std::string_view url) {
  if (url.size() > opener::longestURL) return refused("too long");
  if (!isWrittenAsURL(url)) return refused("not written as a URL");
  constexpr std::string_view folderScheme = "filza://";
  if (url.starts_with(folderScheme)) return readFolder(url.substr(folderScheme.size()));
  for (const std::string_view scheme : {"https://", "http://", "cydia://"}) {
    if (url.starts_with(scheme) && url.size() > scheme.size() && url[scheme.size()] != '/')
      return {OpenableAddress::Kind::Page, plainInQuotes(url), {}};
  }
  return refused("another scheme");
}

ShownFolders::ShownFolders(fs::path temporary) : temporary_(std::move(temporary)) {
  const Descriptor folder(open(temporary_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const auto names = folder ? namesIn(folder.get()) : std::nullopt;
  if (!names) return;
  for (const auto& name : *names) {
    if (name.starts_with(placeName)) removeIfAbandoned(folder.get(), name);
  }
}

ShownFolders::~ShownFolders() {
  for (const auto& shown : shown_) forget(shown);
  if (!place_.empty()) rmdir(place_.c_str());
}

fs::path ShownFolders::show(Descriptor folder, const std::string& wished) {
  struct stat status {};
  if (fstat(folder.get(), &status) != 0) return {};
  const std::string name = isPlainName(wished) ? wished : "folder";
  for (const auto& shown : shown_) {
    if (shown.device == status.st_dev && shown.number == status.st_ino && shown.path.filename() == name)
      return shown.path;
  }
  if (place_.empty() && !makePlace()) return {};
  if (shown_.size() == mostShown) {
    forget(shown_.front());
    shown_.pop_front();
  }
  // Two folders may have the same name.
  const fs::path own = place_ / std::to_string(++count_);
  fs::path path = own / name;
  const std::string open = "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(folder.get());
  if (mkdir(own.c_str(), 0700) != 0 || symlink(open.c_str(), path.c_str()) != 0) {
    rmdir(own.c_str());
    return {};
  }
  shown_.push_back({std::move(folder), status.st_dev, status.st_ino, path});
  return path;
}

bool ShownFolders::makePlace() {
  std::string made = temporary_ / (std::string(placeName) + "XXXXXX");
  if (mkdtemp(made.data()) == nullptr) return false;
  lock_ = Descriptor(open(made.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!lock_ || flock(lock_.get(), LOCK_EX | LOCK_NB) != 0) {
    rmdir(made.c_str());
    return false;
  }
  place_ = made;
  return true;
}

void ShownFolders::forget(const Shown& shown) {
  unlink(shown.path.c_str());
  rmdir(shown.path.parent_path().c_str());
}
