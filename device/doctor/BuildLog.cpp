#include "device/doctor/BuildLog.h"

#include <algorithm>
#include <optional>
#include <set>

namespace device::doctor {
namespace {

using std::string;
using std::string_view;

// A message and what it means. Phrases in lower case; a line with all of them is the message. Versions of
// Theos word their messages differently, so they are short.
struct Message {
  std::vector<string_view> phrases;
  string_view meaning;
};

constexpr string_view kNoTheos =
    "the Makefile's THEOS is empty or leads nowhere; it must say \"export THEOS=/opt/theos\" above its first "
    "include.";
constexpr string_view kNoSdk =
    "the SDK that the project asks for is not in Theos's folder sdks; put it there, or change TARGET in the "
    "Makefile.";
constexpr string_view kBlanks =
    "the path of the project holds blanks, with which Theos cannot build; rename the project.";
constexpr string_view kNoFilter =
    "the tweak has no filter list; make the property list that has the tweak's name beside the Makefile.";
constexpr string_view kNoControl =
    "the project has no control file; make one beside the Makefile, such as a new project's.";
constexpr string_view kBadName =
    "the package name in control may hold only lower-case letters, digits, +, - and full stops; change it.";
constexpr string_view kFakeroot =
    "fakeroot was refused by the system; choose its other kind with \"update-alternatives --config "
    "fakeroot\" on the host.";
constexpr string_view kWrongProgram =
    "a program of the toolchain is made for another processor or system; get the toolchain for this one.";
constexpr string_view kTwice =
    "the Makefile was edited twice over, so that a rule or an include is in it more than once; remove one.";
constexpr string_view kNoSpace =
    "the disk, or the device's /tmp of 512 MiB, was full; make room and build again.";

const std::vector<Message>& messages() {
  static const std::vector<Message> table{
      {{"/common.mk: no such file"}, kNoTheos},
      {{"/tweak.mk: no such file"}, kNoTheos},
      {{"/bundle.mk: no such file"}, kNoTheos},
      {{"not have any sdks"}, kNoSdk},
      {{"chosen sdk", "not appear to exist"}, kNoSdk},
      {{"sysroot", "missing"}, kNoSdk},
      {{"vendor/include", "missing"},
       "this copy of Theos is not whole; run \"git submodule update --init --recursive\" in its folder."},
      {{"did not specify a target"},
       "the Makefile names no target; add a line such as \"TARGET := iphone:clang:latest:14.0\" at its top."},
      {{"project", "contains spaces"}, kBlanks},
      {{"path", "holds blanks"}, kBlanks},
      {{"package scheme", "not exist"},
       "this Theos has no such package scheme; change THEOS_PACKAGE_SCHEME in the Makefile."},
      {{"to have a control file"}, kNoControl},
      {{"has no control file"}, kNoControl},
      {{"missing a filter"}, kNoFilter},
      {{"has no filter list"}, kNoFilter},
      {{"package name", "characters that aren"}, kBadName},
      {{"package name", "may hold only"}, kBadName},
      {{"control directory has bad permissions"},
       "the folder with the control file is open to others; run \"chmod 755\" on layout/DEBIAN."},
      {{"libfakeroot", "permission denied"}, kFakeroot},
      {{"fakeroot", "message channels"}, kFakeroot},
      {{"lack of sysv ipc"}, kFakeroot},
      {{"cannot execute binary file"}, kWrongProgram},
      {{"exec format error"}, kWrongProgram},
      {{"error while loading shared libraries"},
       "a program lacks a library of this system; the checks above name it if it is of the toolchain."},
      {{"included multiple times"}, kTwice},
      {{"overriding recipe for target"}, kTwice},
      {{"overriding commands for target"}, kTwice},
      {{"no space left on device"}, kNoSpace},
      {{"disk quota exceeded"}, kNoSpace},
      {{"error 137"}, "a program was killed, most often for want of memory; close others and build again."},
  };
  return table;
}

// In lower case, without the sequences that colour it.
string plain(string_view line) {
  string result;
  for (std::size_t index = 0; index < line.size(); ++index) {
    if (line[index] == '\033' && index + 1 < line.size() && line[index + 1] == '[') {
      index += 2;
      while (index < line.size() && (line[index] < '@' || line[index] > '~')) ++index;
      continue;
    }
    const char character = line[index];
    result.push_back(character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                          : character);
  }
  return result;
}

bool hasAll(const string& line, const std::vector<string_view>& phrases) {
  return std::all_of(phrases.begin(), phrases.end(),
                     [&](string_view phrase) { return line.find(phrase) != string::npos; });
}

// "make: *** [Makefile:6: all] Error 2", for every make below the first too.
bool isFailureOfMake(const string& line) {
  const auto stars = line.find(": *** ");
  return line.starts_with("make") && stars != string::npos;
}

// The line's number in a whole log, absent for one without its beginning.
Finding noteOn(std::optional<std::size_t> line, string_view meaning) {
  const string place = line ? "Line " + std::to_string(*line) + " of its log: " : "Near the end of its log: ";
  return {Verdict::Note, "last build", place + string(meaning)};
}

}  // namespace

std::vector<Finding> explainBuildLog(string_view log, bool cut) {
  if (cut) log.remove_prefix(std::min(log.find('\n'), log.size()));
  std::vector<Finding> findings;
  std::set<string_view> told;
  const auto place = [cut](std::size_t number) { return cut ? std::nullopt : std::optional(number); };
  std::size_t failure = 0;
  for (std::size_t number = 1; !log.empty(); ++number) {
    const auto end = log.find('\n');
    const string line = plain(log.substr(0, end));
    log.remove_prefix(end == string_view::npos ? log.size() : end + 1);
    if (failure == 0 && isFailureOfMake(line)) failure = number;
    for (const auto& message : messages()) {
      if (hasAll(line, message.phrases) && told.insert(message.meaning).second)
        findings.push_back(noteOn(place(number), message.meaning));
    }
  }
  if (findings.empty() && failure != 0) {
    findings.push_back(
        noteOn(place(failure), "the build failed for a reason that only the lines above it tell."));
  }
  return findings;
}

}  // namespace device::doctor
