#include "device/doctor/DeviceProbe.h"

#include <array>
#include <charconv>
#include <vector>

namespace device::doctor {
namespace {

constexpr std::size_t kLongestLine = 1024;

std::vector<std::string_view> fieldsOf(std::string_view line) {
  std::vector<std::string_view> fields;
  while (true) {
    const auto tab = line.find('\t');
    fields.push_back(line.substr(0, tab));
    if (tab == std::string_view::npos) return fields;
    line.remove_prefix(tab + 1);
  }
}

// -1 where the text is no number.
int numberIn(std::string_view text) {
  int value = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() ? value : -1;
}

void readLine(std::string_view line, DeviceFacts& facts) {
  const auto fields = fieldsOf(line);
  if (fields[0] == "try" && fields.size() == 5 && numberIn(fields[2]) >= 0) {
    facts.trials[std::string(fields[1])] = {std::string(fields[3]), numberIn(fields[2]),
                                            std::string(fields[4])};
  } else if (fields[0] == "entry" && fields.size() == 3) {
    facts.theosEntries[std::string(fields[1])] = fields[2] == "present"  ? Entry::Present
                                                 : fields[2] == "astray" ? Entry::Astray
                                                                         : Entry::Missing;
  } else if (fields[0] == "practice") {
    facts.isPracticeTheos = true;
  } else if (fields[0] == "sdk") {
    ++facts.sdks;
  } else if (fields[0] == "sdk astray") {
    ++facts.sdksAstray;
  } else if (fields[0] == "fonts" && fields.size() == 2 && numberIn(fields[1]) >= 0) {
    facts.arabicFonts = numberIn(fields[1]);
  }
}

}  // namespace

DeviceFacts readProbe(std::string_view output) {
  DeviceFacts facts;
  while (!output.empty()) {
    const auto end = output.find('\n');
    const std::string_view line = output.substr(0, end);
    if (line.size() <= kLongestLine) readLine(line, facts);
    output.remove_prefix(end == std::string_view::npos ? output.size() : end + 1);
  }
  return facts;
}

}  // namespace device::doctor
