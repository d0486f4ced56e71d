// Text from the device, made harmless for terminals and logs.
#pragma once

#include "core/Text.h"

#include <string>
#include <string_view>

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
