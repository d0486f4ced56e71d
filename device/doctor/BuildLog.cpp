#include "device/Visible.h"
#include "device/doctor/Checks.h"

#include <algorithm>
#include <set>

namespace {

using std::string;
using std::string_view;

// What a message of a known cause means. Phrases in lower case; a line with all phrases of one list is the
// message. Versions of Theos word their messages differently, so they are short.
struct Message {
  string_view meaning;
  std::vector<std::vector<string_view>> phrases;
};

const std::vector<Message>& messages() {
  static const std::vector<Message> table{
      {notWhole, {{"/opt/theos/makefiles/", ".mk: no such file"}, {"vendor/include", "missing"}}},
      {"the Makefile sets THEOS to nothing or to a place that is not in the device; remove that line, since "
       "the device sets THEOS itself.",
       {{": /", ".mk: no such file"}}},
      {"the Makefile exports THEOS twice in one line, as in \"export THEOS=/opt/theos THEOS=/opt/theos\"; "
       "keep one of them.",
       {{"*** /", ": is a directory.  stop"}}},
      {"FINALPACKAGE wants plistutil for the property lists; install it with \"apt install libplist-utils\".",
       {{"libplist-utils", "not optimized"}, {"plistutil", "not found"}}},
      {"the SDK that the project asks for is not in Theos's folder sdks; put it there, or change TARGET in "
       "the Makefile.",
       {{"not have any sdks"}, {"chosen sdk", "not appear to exist"}, {"sysroot", "missing"}}},
      {"the Makefile names no target; add a line such as \"TARGET := iphone:clang:latest:14.0\" at its top.",
       {{"did not specify a target"}}},
      {"the path of the project holds blanks, with which Theos cannot build; rename the project.",
       {{"project", "contains spaces"}, {"path", "holds blanks"}}},
      {"this Theos has no such package scheme; change THEOS_PACKAGE_SCHEME in the Makefile.",
       {{"package scheme", "not exist"}}},
      {"the project has no control file; make one beside the Makefile, such as a new project's.",
       {{"to have a control file"}, {"has no control file"}}},
      {"the tweak has no filter list; make the property list that has the tweak's name beside the Makefile.",
       {{"missing a filter"}, {"has no filter list"}}},
      {"the package name in control may hold only lower-case letters, digits, +, - and full stops; change "
       "it.",
       {{"package name", "characters that aren"}, {"package name", "may hold only"}}},
      {"the folder with the control file is open to others; run \"chmod 755\" on layout/DEBIAN.",
       {{"control directory has bad permissions"}}},
      {"fakeroot was refused by the system; choose its other kind with \"update-alternatives --config "
       "fakeroot\" on the host.",
       {{"libfakeroot", "permission denied"}, {"fakeroot", "message channels"}, {"lack of sysv ipc"}}},
      {"a program of the toolchain is made for another processor or system; get the toolchain for this one.",
       {{"cannot execute binary file"}, {"exec format error"}}},
      {"the first line of this script names a program that is missing, or ends as lines of Windows do; "
       "install the program, or get the script again with plain line ends (\"git config core.autocrlf "
       "false\").",
       {{"cannot execute: required file not found"}, {"bad interpreter"}}},
      {"a program lacks a library of this system; the checks above name it if it is of the toolchain.",
       {{"error while loading shared libraries"}}},
      {"the Makefile was edited twice over, so that a rule or an include is in it more than once; remove "
       "one.",
       {{"included multiple times"}, {"overriding recipe for target"}, {"overriding commands for target"}}},
      {"the disk, or the device's /tmp of 512 MiB, was full; make room and build again.",
       {{"no space left on device"}, {"disk quota exceeded"}}},
      {"a program was killed, most often for want of memory; close others and build again.", {{"error 137"}}},
  };
  return table;
}

string lowered(string text) {
  for (char& letter : text) letter = folded(letter);
  return text;
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
  const auto hasAll = [&](const std::vector<string_view>& phrases) {
    return std::all_of(phrases.begin(), phrases.end(),
                       [&](string_view phrase) { return lower.find(phrase) != string::npos; });
  };
  for (const auto& [meaning, phrases] : messages()) {
    if (std::any_of(phrases.begin(), phrases.end(), hasAll)) return meaning;
  }
  return {};
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
