#include "device/opener/OpenableAddress.h"

#include "core/LauncherContract.h"

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <utility>

namespace device {
namespace {

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
  std::string plain;
  for (const char character : url) {
    switch (character) {
      case '\'':
        plain += "%27";
        break;
      case '$':
        plain += "%24";
        break;
      case '(':
        plain += "%28";
        break;
      case ')':
        plain += "%29";
        break;
      default:
        plain += character;
    }
  }
  return plain;
}

int hexadecimal(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

std::optional<std::string> decoded(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      plain += text[i];
      continue;
    }
    if (i + 2 >= text.size()) return std::nullopt;
    const int high = hexadecimal(text[i + 1]);
    const int low = hexadecimal(text[i + 2]);
    if (high < 0 || low < 0) return std::nullopt;
    plain += static_cast<char>(high * 16 + low);
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

}  // namespace device
