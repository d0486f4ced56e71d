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

}  // namespace device
