#include "device/transfer/FixedTheos.h"

#include "core/Text.h"
#include "device/folder/Beneath.h"
#include "device/guard/Contract.h"

#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace device {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kBlanks = " \t\r";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Takes `word` and the blanks behind it off the front of `text`, if it is there as a word of its own.
bool take(std::string_view& text, std::string_view word) {
  if (!text.starts_with(word)) return false;
  const std::string_view rest = text.substr(word.size());
  if (!rest.empty() && kBlanks.find(rest.front()) == std::string_view::npos) return false;
  text = trimmed(rest);
  return true;
}

// What a line assigns to THEOS so that the environment's does not count.
std::optional<std::string> assigned(std::string_view line) {
  while (take(line, "export") || take(line, "override")) {
  }
  if (!line.starts_with("THEOS")) return std::nullopt;
  line = trimmed(line.substr(5));
  const auto equals = line.find('=');
  const std::string_view operation = line.substr(0, equals);
  if (equals == std::string_view::npos || !(operation.empty() || operation == ":" || operation == "::")) {
    return std::nullopt;
  }
  line = line.substr(equals + 1);
  return std::string(trimmed(line.substr(0, line.find('#'))));
}

}  // namespace

std::optional<FixedTheos> fixedTheos(std::string_view makefile) {
  std::optional<FixedTheos> found;
  int conditionals = 0;
  for (int number = 1; !makefile.empty(); ++number) {
    const auto end = makefile.find('\n');
    const std::string_view line = makefile.substr(0, end);
    makefile = end == std::string_view::npos ? std::string_view() : makefile.substr(end + 1);
    // A recipe is the shell's.
    if (line.starts_with('\t')) continue;
    const std::string_view text = trimmed(line);
    for (const char* word : {"ifdef ", "ifndef ", "ifeq ", "ifneq "})
      conditionals += text.starts_with(word) ? 1 : 0;
    if (text.starts_with("endif") && conditionals > 0) --conditionals;
    const auto place = conditionals == 0 ? assigned(text) : std::nullopt;
    if (place) found = FixedTheos{number, *place};
  }
  return found;
}

bool mayBeInDevice(const std::string& place, int var) {
  std::string path = place;
  if (path.starts_with('~')) path.replace(0, 1, guard::homeOfCommands);
  for (const char* home : {"$(HOME)", "${HOME}"}) path = replaceAll(path, home, guard::homeOfCommands);
  if (!path.starts_with('/') || path.find('$') != std::string::npos) return true;
  fs::path whole = fs::path(path + "/").lexically_normal().parent_path();
  if (whole.string().starts_with("/private/var/")) whole = whole.string().substr(8);
  if (whole == "/opt/theos") return true;
  if (whole.string().starts_with("/usr/")) return access(whole.c_str(), F_OK) == 0;
  if (!whole.string().starts_with("/var/")) return false;
  // Where a link leads is the device's own affair.
  const Descriptor above =
      openBeneath(var, whole.parent_path().lexically_relative("/var"), O_PATH | O_DIRECTORY);
  return above ? exists(above.get(), whole.filename()) : errno == ELOOP;
}

}  // namespace device
