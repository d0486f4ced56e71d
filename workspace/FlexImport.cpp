#include "workspace/FlexImport.h"

#include "core/FileManager.h"
#include "core/History.h"
#include "core/Process.h"
#include "core/Text.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"

#include <algorithm>
#include <array>
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

// Takes the next line, without its line feed, off the front of `text`.
std::string_view takeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

void removeWorkFolder() {
  run_cmd("rm -rf %@", {paths::converterFolder});
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

std::vector<std::string> flexMenuEntries(std::string_view cleaned) {
  constexpr std::ptrdiff_t dropped = 5;  // the first, the third, and the last three of what is left
  std::ptrdiff_t remaining = std::count(cleaned.begin(), cleaned.end(), '\n') + 1 - dropped;
  if (remaining < 0) throw std::out_of_range("the converter's menu has too few lines");
  std::vector<std::string> entries;
  for (std::size_t number = 0; remaining > 0 && entries.size() < mostFlexMenuEntries; ++number) {
    const std::string_view line = takeLine(cleaned);
    if (number == 0 || number == 2) continue;
    --remaining;
    if (!line.empty() && line.size() <= longestFlexMenuEntry) entries.emplace_back(line);
  }
  return entries;
}

std::string flexPatchKey(std::string_view title) {
  constexpr unsigned char firstOfTwoUnits = 0xF0;
  std::size_t at = 0;
  for (int dropped = 0; dropped < 3;) {
    if (at == title.size()) throw std::out_of_range("the chosen entry is shorter than three characters");
    dropped += static_cast<unsigned char>(title[at]) >= firstOfTwoUnits ? 2 : 1;
    do {
      ++at;
    } while (at < title.size() && !startsCharacter(title[at]));
  }
  return withoutBlanks(title.substr(at));
}

std::vector<std::string> harvestFlexMenu() {
  removeWorkFolder();
  const MaybeText menu = run_logged("ftt", paths::converterMenuLog);
  if (menu) writeToFileAtomically(paths::converterMenuLog, cleanedFlexMenu(*menu), Durability::Deferred);
  const std::string cleaned = stringWithContentsOfFile(paths::converterMenuLog).value_or(std::string());
  const std::string_view loggedPart = std::string_view(cleaned).substr(0, longestLogLine);
  NSLog(fill("arrayOfComponents == %@", {described(splitLines(loggedPart))}));
  return flexMenuEntries(cleaned);
}

void convertFlexPatch(const std::string& title) {
  removeItemAtPath(paths::conversionLog);
  redirectStandardStreams(paths::conversionLog);
  const MaybeText project = itemName(listedProject());
  const std::string key = flexPatchKey(title);
  run_kept_cmd("cd /var/mobile/Documents && (echo \"%@\") | ftt", {key});
  const MaybeText name = itemName("FlexPatch" + key);
  const std::string older = fill(paths::projectFile, {project, name});
  if (fileExistsAtPath(older)) run_cmd("rm -rf %@", {older});
  // With no project the result lands beside the projects, where it is seen.
  const std::string result = fill("%@/%@", {paths::converterFolder, name});
  run_cmd("mv %@/Tweak.xm %@ && mv %@ %@/",
          {paths::converterFolder, result, result, fill(paths::project, {project.value_or("")})});
  removeWorkFolder();
}

void removeFlexMenu() {
  removeItemAtPath(paths::converterMenuLog);
}
