#include "converter/PlainText.h"

#include "core/Text.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>

namespace {

constexpr std::size_t longestMenuName = 120;  // bytes; a file name holds 255
constexpr std::size_t longestComment = 300;   // bytes

// Removes and returns the first character of `rest`, which must not be empty.
std::string_view takeCharacter(std::string_view& rest) {
  std::size_t length = 1;
  while (length < rest.size() && !startsCharacter(rest[length])) ++length;
  const std::string_view character = rest.substr(0, length);
  rest.remove_prefix(length);
  return character;
}

char32_t codePoint(std::string_view character) {
  const auto first = static_cast<unsigned char>(character.front());
  if (character.size() == 1) return first;
  char32_t point = first & (0x7FU >> character.size());
  for (const char byte : character.substr(1)) point = point << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
  return point;
}

struct Range {
  char32_t first;
  char32_t last;
};

// Invisible or line-breaking characters: controls, unusual blanks, separators, direction marks, fillers. The
// joiners U+200C and U+200D are not among them, since words and emoji need them.
constexpr Range unseen[] = {{0x00, 0x1F},     {0x7F, 0xA0},     {0xAD, 0xAD},     {0x061C, 0x061C},
                            {0x115F, 0x1160}, {0x1680, 0x1680}, {0x180E, 0x180E}, {0x2000, 0x200B},
                            {0x200E, 0x200F}, {0x2028, 0x202F}, {0x205F, 0x206F}, {0x3000, 0x3000},
                            {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}};

bool isSeen(char32_t point) {
  const auto holds = [point](const Range& range) { return point >= range.first && point <= range.last; };
  const bool isTag = point >= 0xE0000 && point <= 0xE0FFF;
  return !isTag && std::none_of(std::begin(unseen), std::end(unseen), holds);
}

bool isOneOf(char32_t point, std::string_view characters) {
  return point < 0x80 && characters.find(static_cast<char>(point)) != std::string_view::npos;
}

bool mayStandInMenu(char32_t point) {
  if (point >= 0x80) return isSeen(point);
  return std::isalnum(static_cast<int>(point)) != 0 || isOneOf(point, "-_.,+");
}

// A question mark may be part of a trigraph for a backslash.
bool mayStandInComment(char32_t point) {
  return isSeen(point) && !isOneOf(point, "\\%?\"/");
}

// `text` with each run of blanks and unwanted characters as one blank, none at the ends, cut after at most
// `longest` bytes between two characters.
std::string onlyWhat(bool (*mayStand)(char32_t), std::string_view text, std::size_t longest) {
  std::string kept;
  bool blankBefore = false;
  while (!text.empty()) {
    const std::string_view character = takeCharacter(text);
    const char32_t point = codePoint(character);
    if (point == ' ' || !mayStand(point)) {
      blankBefore = !kept.empty();
      continue;
    }
    if (kept.size() + character.size() + (blankBefore ? 1 : 0) > longest) break;
    if (blankBefore) kept += ' ';
    kept += character;
    blankBefore = false;
  }
  return kept;
}

// Octal, since such an escape ends after three digits, whatever follows.
void appendEscaped(std::string& literal, std::string_view bytes) {
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    literal += '\\';
    for (const int shift : {6, 3, 0}) literal += static_cast<char>('0' + (value >> shift & 7));
  }
}

}  // namespace

std::string menuName(std::string_view name) {
  // The import removes this word from the menu, but not if it has a blank inside; the key loses the blank
  // again.
  const std::string kept =
      replaceAll(onlyWhat(mayStandInMenu, name, longestMenuName), "PleaseININN", "Please ININN");
  return kept.empty() ? "Unnamed" : kept;
}

std::string commentText(std::string_view text) {
  return onlyWhat(mayStandInComment, text, longestComment);
}

std::string stringLiteral(std::string_view text) {
  std::string literal = "@\"";
  while (!text.empty()) {
    const std::string_view character = takeCharacter(text);
    const char32_t point = codePoint(character);
    // Logos itself looks for directives and closing quotes: no "%end" and no backslash before a quote.
    const bool stands = isSeen(point) && !isOneOf(point, "\\\"%?");
    if (stands) {
      literal += character;
    } else {
      appendEscaped(literal, character);
    }
  }
  return literal + '"';
}
