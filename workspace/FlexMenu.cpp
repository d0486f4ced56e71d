#include "workspace/FlexMenu.h"

#include "core/Text.h"

#include <array>
#include <cstddef>
#include <stdexcept>

namespace {

// In this order. None holds a line feed, so lines are only ever shortened.
constexpr std::array<std::string_view, 11> removedTexts{
    "[131m>",
    "PleaseININN",
    "[139m",
    "[31m",
    "[32m",
    "[0m",
    "[0;34m",
    "[m",
    flexBanner,
    "\033Enter corresponding number: \033\033Invalid selection received.",
    " \033Please input a valid number between \0330\033 and \033",
};

void removeAt(std::vector<std::string>& lines, std::size_t index) {
  if (index >= lines.size()) throw std::out_of_range("the converter's menu has too few lines");
  lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(index));
}

bool beginsCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

}  // namespace

std::string cleanedFlexMenu(std::string_view log) {
  std::string cleaned(log);
  for (const std::string_view removed : removedTexts) {
    if (cleaned.find(removed) != std::string::npos) cleaned = replaceAll(cleaned, removed, "");
  }
  return cleaned;
}

std::vector<std::string> splitLines(std::string_view text) {
  std::vector<std::string> lines;
  for (;;) {
    const std::size_t end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) return lines;
    text.remove_prefix(end + 1);
  }
}

std::vector<std::string> flexMenuEntries(const std::string& cleaned) {
  std::vector<std::string> lines = splitLines(cleaned);
  removeAt(lines, 0);
  removeAt(lines, 1);  // of the shortened list: the second line stays, the third goes
  for (int last = 0; last < 3; ++last) removeAt(lines, lines.empty() ? 0 : lines.size() - 1);
  std::erase(lines, "");
  return lines;
}

std::string flexPatchKey(std::string_view title) {
  std::size_t at = 0;
  for (int dropped = 0; dropped < 3; ++dropped) {
    if (at == title.size()) throw std::out_of_range("the chosen entry is shorter than three characters");
    do {
      ++at;
    } while (at < title.size() && !beginsCharacter(title[at]));
  }
  return withoutBlanks(title.substr(at));
}
