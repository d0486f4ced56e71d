// What the doctor has seen of the host, Theos and the device, and what it means for builds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

// A Problem stops builds; a Note is worth knowing and stops nothing.
enum class Verdict { Ok, Note, Problem };

struct Finding {
  Verdict verdict;
  // A word or two.
  std::string subject;
  // One sentence: what is wrong and what to do.
  std::string sentence;
};

inline Finding ok(std::string subject, std::string sentence) {
  return {Verdict::Ok, std::move(subject), std::move(sentence)};
}
inline Finding note(std::string subject, std::string sentence) {
  return {Verdict::Note, std::move(subject), std::move(sentence)};
}
inline Finding problem(std::string subject, std::string sentence) {
  return {Verdict::Problem, std::move(subject), std::move(sentence)};
}

// For a copy of Theos of which something is missing: what is wrong and what to do.
inline constexpr std::string_view notWhole =
    "this copy of Theos is not whole; run \"git submodule update --init --recursive\" in its folder, or "
    "clone it again with \"git clone --recursive\".";

// The first line of a log that describes why the build failed, before make's own lines about the failure.
struct FirstError {
  // Counted from 1; 0 where the build did not fail.
  std::size_t number = 0;
  // As it is in the log, without the sequences that colour it.
  std::string line;
  // What Theos was at then, or last, in its own words: "Compiling Tweak.x (arm64)..."; empty before that.
  std::string stage;
};
FirstError firstErrorIn(std::string_view log);

// What a message of a known cause means and what to do, beginning in lower case; empty for any other line.
std::string_view meaningOf(const std::string& line);

// Notes on the first error, each known message and the line where it is, each once, in the log's order; empty
// for the log of a build that worked. `cut`: the log's beginning is missing.
std::vector<Finding> explainBuildLog(std::string_view log, bool cut = false);

// Enough of a line that a program said to look it up.
std::string shortened(const std::string& said);

// A program that the probe started in the device.
struct Start {
  // In the device; empty if there is no such program.
  std::string path;
  // As a shell counts: 124 for a timeout, 126 and 127 if it did not start, 128 + n if signal n killed it.
  int status = 127;
  // The first line that it printed, on either stream.
  std::string said;
};

// An entry of Theos's folder, as the device sees it. Astray: a link whose target is not in the device. Empty:
// a folder with at most ".git" in it.
enum class Entry { Missing, Present, Astray, Empty };

// Numbers of an iOS version, "14.5" as {14, 5}; 0 where there is none.
using Version = std::pair<int, int>;

struct Sdk {
  // "iPhoneOS14.5.sdk".
  std::string name;
  Version version;
  // Empty: it has neither headers nor libraries.
  Entry state = Entry::Present;
};

// What became of a project made out of the template and built.
struct Trial {
  // As a shell tells it; 124 took too long. 0 where a package came out.
  int status = 0;
  // What was printed, on either stream.
  std::string log;
};

// All of it comes from programs in the device and is hostile.
struct DeviceFacts {
  std::map<std::string, Start, std::less<>> starts;
  // By path below Theos's folder.
  std::map<std::string, Entry, std::less<>> theosEntries;
  // A path below Theos's folder that the device's user cannot read, or empty.
  std::string closed;
  bool isPracticeTheos = false;
  std::vector<Sdk> sdks;
  // What the template's Makefile builds for.
  Version target;

  // The one that Theos uses; null if there is none.
  const Sdk* newestSdk() const;
  // Whether new projects are built for a later iOS than that SDK's.
  bool isNewestSdkTooOld() const;
  unsigned arabicFonts = 0;
};

struct Facts {
  // Why there is none; empty where bubblewrap was found.
  std::string bubblewrapRefusal;
  fs::path bubblewrap;

  // Why no device starts, or empty.
  std::string deviceRefusal;
  // Absent where no device starts.
  std::optional<DeviceFacts> inDevice;

  // Why the asked-for Theos cannot be used, or empty.
  std::string theosRefusal;
  // On the host; empty where none was found and the practice Theos takes its place.
  fs::path theos;

  enum class DeviceFolder { NotYetMade, Good, OfAnotherUser, OtherFiles };
  fs::path device;
  DeviceFolder deviceFolder = DeviceFolder::NotYetMade;
  // Bytes that the device's user can still write there.
  std::uintmax_t freeSpace = 0;

  // Absent where none was made; `isQuick`: since nobody wanted one.
  std::optional<Trial> trial;
  bool isQuick = false;

  // The end of the last build's log; absent if there is none or it is not a plain file.
  std::optional<std::string> buildLog;
  // Whether the log is longer and its beginning is missing.
  bool buildLogCut = false;
};

// Reads what doctor/probe printed in the device, a line for each thing that it looked at, with tabs between
// the fields. Skips lines that the probe cannot have printed.
DeviceFacts readProbe(std::string_view output);

// One finding for each check, in the order in which to fix them. The last one is the trial's.
std::vector<Finding> findingsFor(const Facts& facts);

bool canBuild(const std::vector<Finding>& findings);
