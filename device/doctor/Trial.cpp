#include "device/doctor/Trial.h"

#include "device/doctor/BuildLog.h"
#include "device/doctor/DeviceProbe.h"

#include <regex>

namespace device::doctor {
namespace {

using std::string;
using std::string_view;

// What to do where a stage of the trial failed for no better known reason. The project is Tweakbench's own,
// so that the reason lies in Theos or on the host.
struct StageRemedy {
  // The beginning of Theos's words for it; "" is before the first.
  string_view stage;
  string_view remedy;
};
constexpr StageRemedy kStageRemedies[] = {
    {"Preprocessing", "see that perl works, and renew vendor/logos in Theos's folder"},
    {"Compiling", "put another whole SDK into Theos's folder sdks, or another toolchain into toolchain"},
    {"Linking",
     "put a toolchain whose linker works at toolchain/linux/iphone in Theos's folder, or a whole SDK "
     "into sdks"},
    {"Generating debug",
     "put a toolchain with a working dsymutil at toolchain/linux/iphone in Theos's folder"},
    {"Stripping", "put a toolchain with a working strip at toolchain/linux/iphone in Theos's folder"},
    {"Merging", "put a toolchain with a working lipo at toolchain/linux/iphone in Theos's folder"},
    {"Signing", "put a working ldid into toolchain/linux/iphone/bin in Theos's folder"},
    {"Making stage", "see that rsync and fakeroot work, and renew vendor/dm.pl in Theos's folder"},
    {"", kWholeCopy},
};

// The path or name that a line says is missing; empty for another line.
string missingIn(const string& line) {
  static const std::regex pattern(
      "([^ :'\"]+)['\"]?(: No such file or directory|: command not found|: not found| file not found)");
  std::smatch found;
  // std::regex recurses once per character.
  const string start = line.substr(0, 4000);
  return std::regex_search(start, found, pattern) ? found.str(1) : string();
}

string remedyFor(const FirstError& error, const DeviceFacts& seen) {
  const string theos = "/opt/theos/";
  const string missing = missingIn(error.line);
  const string_view known = meaningOf(error.line);
  // A missing makefile leaves a variable empty, which gives a path with two slashes.
  if (missing.find("//") != string::npos || missing.ends_with(".mk")) return string(kNotWhole);
  if (!known.empty()) return string(known);
  if (missing.starts_with("/var/Tweakyard/"))
    return string("a step before it made nothing; ") + kToolchain + ".";
  if (missing.starts_with(theos + "toolchain/"))
    return missing.substr(theos.size()) + " is missing in Theos's folder; put a whole toolchain there.";
  if (missing.starts_with(theos))
    return missing.substr(theos.size()) + " is missing in Theos's folder; " + kWholeCopy + ".";
  const bool isSdksPart = error.stage.starts_with("Compiling") || error.stage.starts_with("Linking");
  const bool isHeader = error.line.find("' file not found") != string::npos;
  if (isSdksPart && (missing.empty() || isHeader) && seen.isNewestSdkTooOld()) {
    return seen.newestSdk()->name + " is older than iOS " + textOf(seen.target) +
           ", for which new projects are built; put a newer SDK into Theos's folder sdks.";
  }
  if (isHeader) {
    if (missing.find("ubstrate") != string::npos)
      return string("vendor/include or vendor/lib is not whole; ") + kSubmodules + ".";
    return "the SDK is not whole; put another one into Theos's folder sdks.";
  }
  if (!missing.empty()) {
    return missing +
           " is not there in the device, which shows Theos and the host's /usr; install it on the "
           "host, or mend what asks for it.";
  }
  if (error.line.find("Permission denied") != string::npos)
    return "everybody must be able to read Theos's folder and to run its programs; run \"chmod -R a+rX\" on "
           "the "
           "folder and \"chmod a+x\" on the program.";
  for (const auto& [stage, remedy] : kStageRemedies) {
    if (error.stage.starts_with(stage)) return string(remedy) + ".";
  }
  return {};
}

}  // namespace

Finding trialFinding(const Facts& facts, bool canBuildSoFar) {
  const char* subject = "trial build";
  if (!facts.trial) {
    return note(subject, facts.isQuick   ? "Left out, so nothing was tried."
                         : canBuildSoFar ? "None was made."
                                         : "Not made, since it cannot work before the rest is mended.");
  }
  if (facts.trial->status == 0) return ok(subject, "A new project builds, and a package came out.");
  const FirstError error = firstErrorIn(facts.trial->log);
  if (facts.trial->status == 124) {
    return problem(subject, "A new project's build did not end in time" +
                                (error.stage.empty() ? "" : ", being at \"" + shortened(error.stage) + "\"") +
                                "; try again when the machine is less busy, and look at what hangs.");
  }
  const string stage = error.stage.empty() ? "" : " at \"" + shortened(error.stage) + "\"";
  return problem(subject, "A new project does not build: it stops" + stage + " with \"" +
                              shortened(error.line) + "\": " + remedyFor(error, *facts.inDevice));
}

}  // namespace device::doctor
