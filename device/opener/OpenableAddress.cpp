#include "device/Visible.h"
#include "device/folder/Beneath.h"
#include "device/opener/Opener.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <fcntl.h>

namespace {

OpenableAddress refused(std::string reason) {
  return {OpenableAddress::Kind::Refused, std::move(reason)};
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

OpenableAddress readFolder(std::string_view place) {
  // Both forms are in use: filza:///PATH and filza://view/PATH.
  if (place.starts_with("view/")) place.remove_prefix(4);
  const auto path = decoded(place);
  if (place.find_first_of("?#") != std::string_view::npos || !path || hasControls(*path))
    return refused("not a path");
  fs::path below = fs::path(*path).relative_path();
  if (path->starts_with("/private/var")) below = below.lexically_relative("private");
  const bool isOwn = path->starts_with('/') && !below.empty() &&
                     (*below.begin() == "var" || *below.begin() == "Applications");
  if (!isOwn) return refused("not a folder of the device's own");
  if (std::find(below.begin(), below.end(), "..") != below.end()) return refused("a path that goes up");
  below = below.lexically_normal();
  return {OpenableAddress::Kind::Folder, (below.has_filename() ? below : below.parent_path()).string()};
}

constexpr std::size_t mostShown = 32;
constexpr std::string_view placeName = "tweakbench-folders-";

// Letters of any script, and what no shell minds anywhere.
bool isPlainName(const std::string& name) {
  return !name.empty() && name.front() != '-' && name.front() != '.' && isValidUTF8(name) &&
         isMadeOf(name, "._+-@", true);
}

}  // namespace

OpenableAddress readAddress(std::string_view url) {
  if (url.size() > opener::longestURL) return refused("too long");
  // Blanks, double quotes, backslashes and most brackets come as %xx.
  if (!isMadeOf(url, "!#$%&'()*+,-./:;=?@[]_~")) return refused("not written as a URL");
  constexpr std::string_view folderScheme = "filza://";
  if (url.starts_with(folderScheme)) return readFolder(url.substr(folderScheme.size()));
  for (const std::string_view scheme : {"https://", "http://", "cydia://"}) {
    if (url.starts_with(scheme) && url.size() > scheme.size() && url[scheme.size()] != '/')
      return {OpenableAddress::Kind::Page, plainInQuotes(url)};
  }
  return refused("another scheme");
}

// Deletes nothing but links that lead nowhere, as those of a process that is gone do, and what is empty then.
void ShownFolders::removeLeft() const {
  const Descriptor folder(open(temporary_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  for (const auto& name : namesInOrNone(folder.get())) {
    if (!name.starts_with(placeName)) continue;
    const Descriptor place = openFolderBeneath(folder.get(), name);
    if (!place || statusOf(place.get()).st_uid != geteuid()) continue;
    for (const auto& link : namesInOrNone(place.get())) {
      if (faccessat(place.get(), link.c_str(), F_OK, 0) != 0 && errno == ENOENT)
        unlinkat(place.get(), link.c_str(), 0);
    }
    unlinkat(folder.get(), name.c_str(), AT_REMOVEDIR);
  }
}

ShownFolders::~ShownFolders() {
  for (const auto& shown : shown_) forget(shown);
}

fs::path ShownFolders::show(Descriptor folder, const std::string& wished) {
  const std::string name = isPlainName(wished) ? wished : "folder";
  const std::string open = "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(folder.get());
  for (const auto& shown : shown_) {
    std::error_code error;
    if (shown.path.filename() == name && fs::equivalent(shown.path, open, error)) return shown.path;
  }
  if (shown_.size() == mostShown) {
    forget(shown_.front());
    shown_.pop_front();
  }
  // One for each: two folders may have the same name.
  std::string place = temporary_ / (std::string(placeName) + "XXXXXX");
  if (mkdtemp(place.data()) == nullptr) return {};
  Shown shown{std::move(folder), fs::path(place) / name};
  if (symlink(open.c_str(), shown.path.c_str()) != 0) {
    rmdir(place.c_str());
    return {};
  }
  return shown_.emplace_back(std::move(shown)).path;
}

void ShownFolders::forget(const Shown& shown) {
  unlink(shown.path.c_str());
  rmdir(shown.path.parent_path().c_str());
}
