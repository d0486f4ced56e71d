#include "ui/Localized.h"

namespace {

constexpr char16_t controlPictures = 0x2400;
constexpr QChar replacement(0xFFFD);

bool steersDirection(char16_t character) {
  return (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069) ||
         character == 0x200E || character == 0x200F;
}

}  // namespace

QString shownName(const std::string& name) {
  QString shown = QString::fromStdString(name);
  for (QChar& character : shown) {
    const char16_t code = character.unicode();
    if (code < 0x20) character = QChar(static_cast<char16_t>(controlPictures + code));
    if (code == 0x7F || code == 0x2028 || code == 0x2029 || steersDirection(code)) character = replacement;
  }
  return shown;
}
