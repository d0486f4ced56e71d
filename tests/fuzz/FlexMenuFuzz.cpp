// Whatever a converter prints: the entries against the plain steps, and the key of each.
#include "core/Text.h"
#include "fuzz/Fuzz.h"
#include "workspace/FlexImport.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace {

using Lines = std::vector<std::string>;

// The steps as they are told: the first line goes, the third, and the last three.
std::optional<Lines> entriesPlainly(const std::string& cleaned) {
  Lines lines = splitLines(cleaned);
  if (lines.size() < 5) return std::nullopt;
  lines.erase(lines.begin());
  lines.erase(lines.begin() + 1);
  lines.resize(lines.size() - 3);
  std::erase_if(lines,
                [](const std::string& line) { return line.empty() || line.size() > longestFlexMenuEntry; });
  if (lines.size() > mostFlexMenuEntries) lines.resize(mostFlexMenuEntries);
  return lines;
}

std::optional<Lines> entries(const std::string& cleaned) {
  try {
    return flexMenuEntries(cleaned);
  } catch (const std::out_of_range&) {
    return std::nullopt;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view log = asText(data, size);
  if (!isValidUTF8(log)) return 0;
  const std::string cleaned = cleanedFlexMenu(log);
  const auto found = entries(cleaned);
  mustHold(found == entriesPlainly(cleaned), "entries are those of the plain steps", cleaned);
  if (!found) return 0;
  for (const std::string& entry : *found) {
    try {
      const std::string key = flexPatchKey(entry);
      mustHold(isValidUTF8(key), "a key is text", entry);
      mustHold(key.find(' ') == std::string::npos, "a key has no blanks", key);
      mustHold(withoutBlanks(entry).ends_with(key), "a key is the end of its entry", entry);
    } catch (const std::out_of_range&) {
      mustHold(entry.size() < 12, "only a short entry has no key", entry);
    }
  }
  return 0;
}
