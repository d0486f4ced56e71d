// Text from the device, made harmless for terminals and logs.
#pragma once

#include "core/Text.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

// Whether `text` has control characters of ASCII.
inline bool hasControls(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](unsigned char one) { return one < 0x20 || one == 0x7f; });
}

// Whether `text` is made of ASCII's letters and digits and of `others`, and where `isAnyScript`, of
// characters beyond ASCII.
inline bool isMadeOf(std::string_view text, std::string_view others, bool isAnyScript = false) {
  return std::all_of(text.begin(), text.end(), [&](char one) {
    const auto code = static_cast<unsigned char>(one);
    return std::isalnum(code) != 0 || (isAnyScript && code >= 0x80) || others.find(one) != others.npos;
  });
}

// Whether one of the `parts` is in `text`.
inline bool hasAny(std::string_view text, std::initializer_list<std::string_view> parts) {
  return std::any_of(parts.begin(), parts.end(), [&](auto part) { return text.find(part) != text.npos; });
}

// The number that is all of `text`; absent for other text and for numbers that are too large.
inline std::optional<unsigned> numberIn(std::string_view text) {
  unsigned value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

// How many bytes the character that starts with `first` has in UTF-8.
inline std::size_t lengthOfCharacter(char first) {
  const auto code = static_cast<unsigned char>(first);
  return code < 0xc0 ? 1 : code < 0xe0 ? 2 : code < 0xf0 ? 3 : 4;
}

// Every control character but those in `kept` becomes a question mark, U+0080 to U+009F too. So does every
// byte that is not part of UTF-8 text: some terminals take such a byte for one of these.
inline std::string visible(std::string_view text, std::string_view kept = {}) {
  std::string shown;
  while (!text.empty()) {
    const std::string_view character = text.substr(0, lengthOfCharacter(text.front()));
    const bool isPlain = static_cast<unsigned char>(text.front()) >= 0x20 && text.front() != 0x7f;
    const bool isLateControl =
        character.front() == '\xc2' && static_cast<unsigned char>(character.back()) < 0xa0;
    if ((isPlain && !isLateControl && isValidUTF8(character)) ||
        kept.find(character) != std::string_view::npos) {
      shown += character;
      text.remove_prefix(character.size());
    } else {
      shown += '?';
      text.remove_prefix(isLateControl ? character.size() : 1);
    }
  }
  return shown;
}

// Output that comes in pieces, made harmless for a terminal in which colours are welcome: their sequences
// stay.
class ColouredOutput {
 public:
  std::string take(std::string_view piece) {
    rest_.append(piece);
    std::string result;
    std::size_t done = 0;
    while (true) {
      const std::size_t escape = rest_.find('\033', done);
      result.append(visible(rest_.substr(done, escape - done), "\n\t\r"));
      if (escape == std::string::npos) break;
      std::size_t end = escape + 1;
      if (end < rest_.size() && rest_[end] == '[') end = rest_.find_first_not_of("0123456789;", end + 1);
      // The rest of the sequence comes with the next piece.
      if (end >= rest_.size() && rest_.size() - escape <= longestSequence) {
        rest_.erase(0, escape);
        return result;
      }
      const bool isColour = end < rest_.size() && end > escape + 1 && rest_[end] == 'm';
      done = isColour ? end + 1 : escape + 1;
      result.append(isColour ? rest_.substr(escape, done - escape) : "?");
    }
    rest_.clear();
    return result;
  }

 private:
  static constexpr std::size_t longestSequence = 64;
  std::string rest_;
};
