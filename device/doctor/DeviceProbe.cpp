#include "device/doctor/DeviceProbe.h"

#include <algorithm>
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

Entry stateNamed(std::string_view word) {
  if (word == "present") return Entry::Present;
  if (word == "astray") return Entry::Astray;
  return word == "empty" ? Entry::Empty : Entry::Missing;
}

void readLine(std::string_view line, DeviceFacts& facts) {
  const auto fields = fieldsOf(line);
  if (fields[0] == "try" && fields.size() == 5 && numberIn(fields[2]) >= 0) {
    facts.starts[std::string(fields[1])] = {std::string(fields[3]), numberIn(fields[2]),
                                            std::string(fields[4])};
  } else if (fields[0] == "entry" && fields.size() == 3) {
    facts.theosEntries[std::string(fields[1])] = stateNamed(fields[2]);
  } else if (fields[0] == "practice") {
    facts.isPracticeTheos = true;
  } else if (fields[0] == "closed" && fields.size() == 2) {
    facts.closed = fields[1];
  } else if (fields[0] == "target" && fields.size() == 2) {
    facts.target = versionIn(fields[1]);
  } else if (fields[0] == "sdk" && fields.size() == 3) {
    facts.sdks.push_back({std::string(fields[1]), versionIn(fields[1]), stateNamed(fields[2])});
  } else if (fields[0] == "fonts" && fields.size() == 2 && numberIn(fields[1]) >= 0) {
    facts.arabicFonts = numberIn(fields[1]);
  }
}

}  // namespace

Version versionIn(std::string_view text) {
  Version version;
  text.remove_prefix(std::min(text.find_first_of("0123456789"), text.size()));
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, version.first);
  if (error == std::errc() && stop != end && *stop == '.') std::from_chars(stop + 1, end, version.second);
  return version;
}

std::string textOf(const Version& version) {
  return std::to_string(version.first) + "." + std::to_string(version.second);
}

const Sdk* DeviceFacts::newestSdk() const {
  const auto newest = std::max_element(sdks.begin(), sdks.end(),
                                       [](auto& one, auto& two) { return one.version < two.version; });
  return newest == sdks.end() ? nullptr : &*newest;
}

bool DeviceFacts::isNewestSdkTooOld() const {
  return !sdks.empty() && newestSdk()->version < target;
}

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
