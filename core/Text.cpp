#include "core/Text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

constexpr std::string_view placeholder = "%@";
constexpr std::string_view absentText = "(null)";

// The length of the valid multi-byte character at the start of `rest`, or 0.
std::size_t characterLength(std::string_view rest) {
  const auto first = static_cast<unsigned char>(rest[0]);
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || rest.size() < length) return 0;
  const std::string_view others = rest.substr(1, length - 1);
  if (std::any_of(others.begin(), others.end(), startsCharacter)) return 0;
  const auto second = static_cast<unsigned char>(rest[1]);
  const bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
  const bool surrogate = first == 0xED && second > 0x9F;
  const bool pastTheLast = first == 0xF4 && second > 0x8F;
  return overlong || surrogate || pastTheLast ? 0 : length;
}

// How many bytes at the start of `text` are valid characters.
std::size_t validLength(std::string_view text) {
  constexpr std::uint64_t highBits = 0x8080808080808080U;
  std::size_t at = 0;
  while (at < text.size()) {
    // Logs are nearly all ASCII: many bytes at a time while that holds.
    for (std::uint64_t block = 0; text.size() - at >= sizeof block; at += sizeof block) {
      std::memcpy(&block, text.data() + at, sizeof block);
      if ((block & highBits) != 0) break;
    }
    if (at == text.size()) return at;
    if (static_cast<unsigned char>(text[at]) < 0x80) {
      ++at;
      continue;
    }
    const std::size_t length = characterLength(text.substr(at));
    if (length == 0) return at;
    at += length;
  }
  return at;
}

}  // namespace

bool isValidUTF8(std::string_view text) {
  return validLength(text) == text.size();
}

std::string withReplacementCharacters(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (true) {
    const std::size_t valid = validLength(text);
    result.append(text, 0, valid);
    if (valid == text.size()) return result;
    result.append("\uFFFD");
    text.remove_prefix(valid + 1);
  }
}

std::string replaceAll(std::string_view text, std::string_view pattern, std::string_view replacement) {
  std::string result;
  result.reserve(text.size());
  std::size_t from = 0;
  for (std::size_t found = text.find(pattern); found != std::string_view::npos;
       found = text.find(pattern, from)) {
    result.append(text, from, found - from).append(replacement);
    from = found + pattern.size();
  }
  return result.append(text, from);
}

std::string fill(std::string_view format, std::initializer_list<MaybeText> values) {
  std::string result;
  const MaybeText* next = values.begin();
  std::size_t from = 0;
  for (std::size_t found = format.find(placeholder); found != std::string_view::npos;
       found = format.find(placeholder, from)) {
    result.append(format, from, found - from);
    const bool present = next != values.end() && next->has_value();
    result.append(present ? std::string_view(**next) : absentText);
    if (next != values.end()) ++next;
    from = found + placeholder.size();
  }
  return result.append(format, from);
}

std::string withoutSequences(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '\033') {
      result.push_back(text[at]);
    } else if (at + 1 < text.size() && text[at + 1] == '[') {
      const std::size_t end = text.find_first_not_of("0123456789;:?", at + 2);
      const char last = end < text.size() ? text[end] : '\0';
      if ((last >= 'A' && last <= 'Z') || (last >= 'a' && last <= 'z')) at = end;
    }
  }
  return result;
}

std::string_view trimmed(std::string_view text, std::string_view unwanted) {
  const std::size_t first = text.find_first_not_of(unwanted);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(unwanted) - first + 1);
}

bool isAmong(std::string_view names, std::string_view name) {
  for (std::size_t at = names.find(name); at != std::string_view::npos; at = names.find(name, at + 1)) {
    const std::size_t end = at + name.size();
    if ((at == 0 || names[at - 1] == ' ') && (end == names.size() || names[end] == ' '))
      return !name.empty() && name.find(' ') == std::string_view::npos;
  }
  return false;
}

std::string withoutBlanks(std::string_view typed) {
  return replaceAll(typed, " ", "");
}

std::string described(const std::vector<std::string>& items) {
  std::string text = "(";
  for (const std::string& item : items) text += (text.size() > 1 ? ", " : "") + item;
  return text + ")";
}

std::string lastPathComponent(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  if (path == "/") return "/";
  const std::size_t slash = path.rfind('/');
  return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

std::string pathExtension(std::string_view path) {
  const std::string name = lastPathComponent(path);
  const std::size_t dot = name.rfind('.');
  return dot == std::string::npos || dot == 0 ? std::string() : name.substr(dot + 1);
}
