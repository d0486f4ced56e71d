// Text from the device, made harmless for terminals and logs.
#pragma once

#include <string>
#include <string_view>

namespace device {

// Every control character but those in `kept` becomes a question mark.
inline std::string visible(std::string text, std::string_view kept = {}) {
  for (char& character : text) {
    const auto code = static_cast<unsigned char>(character);
    const bool isControl = code < 0x20 || code == 0x7f;
    if (isControl && kept.find(character) == std::string_view::npos) character = '?';
  }
  return text;
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
      if (end >= rest_.size() && rest_.size() - escape <= kLongestSequence) {
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
  static constexpr std::size_t kLongestSequence = 64;
  std::string rest_;
};

}  // namespace device
