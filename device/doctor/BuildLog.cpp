#include "device/Visible.h"
#include "device/doctor/Checks.h"

#include <algorithm>
#include <set>

namespace {

using std::string;
using std::string_view;

// A message and what it means. Phrases in lower case; a line with all of them is the message. Versions of
// Theos word their messages differently, so they are short.
struct Message {
  std::vector<string_view> phrases;
  string_view meaning;
};

constexpr string_view noTheos =
    "the Makefile sets THEOS to nothing or to a place that is not in the device; remove that line, since the "
    "device sets THEOS itself.";
constexpr string_view noPlistUtil =
    "FINALPACKAGE wants plistutil for the property lists; install it with \"apt install libplist-utils\".";
constexpr string_view noSdk =
    "the SDK that the project asks for is not in Theos's folder sdks; put it there, or change TARGET in the "
    "Makefile.";
constexpr string_view blanks =
    "the path of the project holds blanks, with which Theos cannot build; rename the project.";
constexpr string_view noFilter =
    "the tweak has no filter list; make the property list that has the tweak's name beside the Makefile.";
constexpr string_view noControl =
    "the project has no control file; make one beside the Makefile, such as a new project's.";
constexpr string_view badName =
    "the package name in control may hold only lower-case letters, digits, +, - and full stops; change it.";
constexpr string_view fakeroot =
    "fakeroot was refused by the system; choose its other kind with \"update-alternatives --config "
    "fakeroot\" on the host.";
constexpr string_view wrongProgram =
    "a program of the toolchain is made for another processor or system; get the toolchain for this one.";
constexpr string_view noInterpreter =
    "the first line of this script names a program that is missing, or ends as lines of Windows do; install "
    "the program, or get the script again with plain line ends (\"git config core.autocrlf false\").";
constexpr string_view twice =
    "the Makefile was edited twice over, so that a rule or an include is in it more than once; remove one.";
constexpr string_view noSpace =
    "the disk, or the device's /tmp of 512 MiB, was full; make room and build again.";

const std::vector<Message>& messages() {
  static const std::vector<Message> table{
      {{"/opt/theos/makefiles/", ".mk: no such file"}, notWhole},
      {{": /", ".mk: no such file"}, noTheos},
      {{"*** /", ": is a directory.  stop"},
       "the Makefile exports THEOS twice in one line, as in \"export THEOS=/opt/theos THEOS=/opt/theos\"; "
       "keep "
       "one of them."},
      {{"libplist-utils", "not optimized"}, noPlistUtil},
      {{"plistutil", "not found"}, noPlistUtil},
      {{"not have any sdks"}, noSdk},
      {{"chosen sdk", "not appear to exist"}, noSdk},
      {{"sysroot", "missing"}, noSdk},
      {{"vendor/include", "missing"}, notWhole},
      {{"did not specify a target"},
       "the Makefile names no target; add a line such as \"TARGET := iphone:clang:latest:14.0\" at its top."},
      {{"project", "contains spaces"}, blanks},
      {{"path", "holds blanks"}, blanks},
      {{"package scheme", "not exist"},
       "this Theos has no such package scheme; change THEOS_PACKAGE_SCHEME in the Makefile."},
      {{"to have a control file"}, noControl},
      {{"has no control file"}, noControl},
      {{"missing a filter"}, noFilter},
      {{"has no filter list"}, noFilter},
      {{"package name", "characters that aren"}, badName},
      {{"package name", "may hold only"}, badName},
      {{"control directory has bad permissions"},
       "the folder with the control file is open to others; run \"chmod 755\" on layout/DEBIAN."},
      {{"libfakeroot", "permission denied"}, fakeroot},
      {{"fakeroot", "message channels"}, fakeroot},
      {{"lack of sysv ipc"}, fakeroot},
      {{"cannot execute binary file"}, wrongProgram},
      {{"exec format error"}, wrongProgram},
      {{"cannot execute: required file not found"}, noInterpreter},
      {{"bad interpreter"}, noInterpreter},
      {{"error while loading shared libraries"},
       "a program lacks a library of this system; the checks above name it if it is of the toolchain."},
      {{"included multiple times"}, twice},
      {{"overriding recipe for target"}, twice},
      {{"overriding commands for target"}, twice},
      {{"no space left on device"}, noSpace},
      {{"disk quota exceeded"}, noSpace},
      {{"error 137"}, "a program was killed, most often for want of memory; close others and build again."},
  };
  return table;
}

string lowered(string text) {
  for (char& letter : text) letter = folded(letter);
  return text;
}

bool hasAll(const string& line, const std::vector<string_view>& phrases) {
  return std::all_of(phrases.begin(), phrases.end(),
                     [&](string_view phrase) { return line.find(phrase) != string::npos; });
}

// "==> Compiling Tweak.x (arm64)…" and "> Making all for tweak P…"; what Theos says of errors looks alike.
bool isStage(const string& lower) {
  if (lower.starts_with("> ") || lower.starts_with("making ")) return true;
  return lower.starts_with("==> ") && !lower.starts_with("==> error") && !lower.starts_with("==> warning") &&
         !lower.starts_with("==> notice");
}

// "make: *** [Makefile:6: all] Error 2" reports an error of the lines above it; "Makefile:6: *** missing
// separator.  Stop." is one itself.
bool isFailureOfMake(const string& lower) {
  return lower.starts_with("*** ") || lower.find(": *** ") != string::npos;
}
bool isOnlyFailureOfMake(const string& lower) {
  return lower.starts_with("make") && isFailureOfMake(lower) && lower.find("] error ") != string::npos;
}

bool looksLikeError(const string& lower) {
  // The linker's own words are above it.
  return !hasAny(lower, {"linker command failed", "warning:"}) &&
         hasAny(lower, {"error", "no such file", "not found", "permission denied", "cannot ", "can't ",
                        "undefined symbol"});
}

// Lines that may precede an error but do not describe it.
bool isNoise(const string& lower) {
  return lower.find("warning:") != string::npos || lower.starts_with("==> ") || lower.starts_with("rm ") ||
         lower.starts_with("in file included") || lower.starts_with("while building") ||
         lower.find_first_not_of(" \t\r") == string::npos;
}

// Calls `take` with each line's number, itself and it in lower case, until it returns false.
template <typename Take>
void forEachLine(string_view log, Take take) {
  for (std::size_t number = 1; !log.empty(); ++number) {
    const auto end = log.find('\n');
    string line = withoutSequences(log.substr(0, end));
    line.erase(0, std::min(line.find_first_not_of(' '), line.size()));
    log.remove_prefix(end == string_view::npos ? log.size() : end + 1);
    if (!take(number, line, lowered(line))) return;
  }
}

// Without the line's number for a log whose beginning is missing.
Finding noteOn(std::size_t number, bool cut, const string& meaning) {
  const string place =
      cut ? string("Near the end of its log: ") : "Line " + std::to_string(number) + " of its log: ";
  return {Verdict::Note, "last build", place + meaning};
}

}  // namespace

FirstError firstErrorIn(string_view log) {
  FirstError suspect;
  FirstError found;
  bool isFound = false;
  // Whether the suspect looks like an error, so that no later line replaces it.
  bool isSure = false;
  forEachLine(log, [&](std::size_t number, const string& line, const string& lower) {
    if (isStage(lower)) {
      suspect = {0, {}, lower.starts_with("making ") ? line : line.substr(line.find(' ') + 1)};
      isSure = false;
      return true;
    }
    if (isFailureOfMake(lower)) {
      isFound = true;
      found = suspect;
      if (suspect.number == 0 || (!isOnlyFailureOfMake(lower) && !isSure)) {
        found.number = number;
        found.line = line;
      }
      return false;
    }
    const bool isError = looksLikeError(lower);
    if (!isSure && (isError || (suspect.number == 0 && !isNoise(lower)))) {
      suspect.number = number;
      suspect.line = line;
      isSure = isError;
    }
    return true;
  });
  return isFound ? found : FirstError{0, {}, suspect.stage};
}

string_view meaningOf(const string& line) {
  const string lower = lowered(line);
  const auto& table = messages();
  const auto found = std::find_if(table.begin(), table.end(),
                                  [&](const Message& message) { return hasAll(lower, message.phrases); });
  return found == table.end() ? string_view() : found->meaning;
}

string shortened(const string& said) {
  constexpr std::size_t longest = 120;
  if (said.size() <= longest) return said;
  std::size_t end = longest;
  // Not within a character.
  while (end > 0 && !startsCharacter(said[end])) --end;
  return said.substr(0, end) + "…";
}

std::vector<Finding> explainBuildLog(string_view log, bool cut) {
  if (cut) log.remove_prefix(std::min(log.find('\n'), log.size()));
  const FirstError first = firstErrorIn(log);
  std::vector<Finding> findings;
  std::set<string_view> told;
  forEachLine(log, [&](std::size_t number, const string& line, const string& lower) {
    const string_view meaning = meaningOf(line);
    if (!meaning.empty() && told.insert(meaning).second) {
      findings.push_back(noteOn(number, cut, string(meaning)));
    } else if (meaning.empty() && number == first.number) {
      findings.push_back(noteOn(number, cut,
                                isOnlyFailureOfMake(lower)
                                    ? "the build failed for a reason that only the lines above it tell."
                                    : "the first error is \"" + shortened(line) + "\"; fix that one first."));
    }
    return true;
  });
  return findings;
}
