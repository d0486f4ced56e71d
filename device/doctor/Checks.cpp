#include "device/doctor/Checks.h"

#include "device/Visible.h"
#include "device/sandbox/Sandbox.h"

#include <algorithm>
#include <charconv>

namespace {

using std::string;
using std::string_view;

constexpr std::size_t longestLine = 1024;

// What is between the separators.
std::vector<string_view> partsOf(string_view text, char separator) {
  std::vector<string_view> parts;
  while (true) {
    const auto end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

Entry stateNamed(string_view word) {
  if (word == "present") return Entry::Present;
  if (word == "astray") return Entry::Astray;
  return word == "empty" ? Entry::Empty : Entry::Missing;
}

Version versionIn(string_view text) {
  Version version;
  text.remove_prefix(std::min(text.find_first_of("0123456789"), text.size()));
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, version.first);
  if (error == std::errc() && stop != end && *stop == '.') std::from_chars(stop + 1, end, version.second);
  return version;
}

string textOf(const Version& version) {
  return std::to_string(version.first) + "." + std::to_string(version.second);
}

void readLine(string_view line, DeviceFacts& facts) {
  const auto fields = partsOf(line, '\t');
  if (fields[0] == "try" && fields.size() == 5 && numberIn(fields[2])) {
    facts.starts[string(fields[1])] = {string(fields[3]), static_cast<int>(*numberIn(fields[2])),
                                       string(fields[4])};
  } else if (fields[0] == "entry" && fields.size() == 3) {
    facts.theosEntries[string(fields[1])] = stateNamed(fields[2]);
  } else if (fields[0] == "practice") {
    facts.isPracticeTheos = true;
  } else if (fields[0] == "closed" && fields.size() == 2) {
    facts.closed = fields[1];
  } else if (fields[0] == "target" && fields.size() == 2) {
    facts.target = versionIn(fields[1]);
  } else if (fields[0] == "sdk" && fields.size() == 3) {
    facts.sdks.push_back({string(fields[1]), versionIn(fields[1]), stateNamed(fields[2])});
  } else if (fields[0] == "fonts" && fields.size() == 2 && numberIn(fields[1])) {
    facts.arabicFonts = *numberIn(fields[1]);
  }
}

}  // namespace

const Sdk* DeviceFacts::newestSdk() const {
  const auto newest = std::max_element(sdks.begin(), sdks.end(),
                                       [](auto& one, auto& two) { return one.version < two.version; });
  return newest == sdks.end() ? nullptr : &*newest;
}

bool DeviceFacts::isNewestSdkTooOld() const {
  return !sdks.empty() && newestSdk()->version < target;
}

DeviceFacts readProbe(string_view output) {
  DeviceFacts facts;
  for (const string_view line : partsOf(output, '\n')) {
    if (line.size() <= longestLine) readLine(line, facts);
  }
  return facts;
}

namespace {

// What a missing or broken program means to a build.
enum class Need { Required, Useful, None };

struct ProgramCheck {
  const char* name;
  Need withTheos;
  Need withPractice;
  // What builds have it for, as in "it is what …".
  const char* purpose;
  // The package that it comes in; null for what the toolchain has.
  const char* package;
};

// Where the toolchain of Theos is looked for.
const string toolchainFolder = "toolchain/linux/iphone";

string toolchainWith(const string& property) {
  return "put a toolchain " + property + " at " + toolchainFolder + " in Theos's folder";
}

// What to do, in words that several checks have.
const string toolchain = toolchainWith("for Linux");
const string wholeCopy = "get a whole copy of Theos with \"git clone --recursive\"";
const string submodules =
    "run \"git submodule update --init --recursive\" in Theos's folder, which needs a clone and no unpacked "
    "archive";

constexpr ProgramCheck programs[] = {
    {"make", Need::Required, Need::Required, "runs every build", "make"},
    {"unzip", Need::Required, Need::Required, "unpacks the template of a new project", "unzip"},
    {"dpkg-deb", Need::None, Need::Required, "makes the practice Theos's packages", "dpkg"},
    {"perl", Need::Required, Need::None, "runs Theos's preprocessor and packager", "perl"},
    {"rsync", Need::Required, Need::None, "fills the stage of a package", "rsync"},
    {"fakeroot", Need::Useful, Need::None, "gives the files of a package their owners", "fakeroot"},
    {"clang", Need::Required, Need::None, "compiles the sources", nullptr},
    {"ldid", Need::Required, Need::None, "signs what was compiled", nullptr},
    {"lipo", Need::Useful, Need::None, "joins the parts for several processors", nullptr},
    {"plistutil", Need::Useful, Need::None, "converts the property lists under FINALPACKAGE",
     "libplist-utils"},
};

// Without one of them Theos stops before it reads a project. Those of vendor are submodules.
constexpr const char* theosEntries[] = {
    "bin",        "makefiles/tweak.mk", "vendor/include", "vendor/include/.git",
    "vendor/lib", "vendor/lib/.git",    "vendor/logos",   "vendor/dm.pl"};

constexpr std::uintmax_t mebibyte = 1U << 20;
constexpr std::uintmax_t tooLittleSpace = 16 * mebibyte;
constexpr std::uintmax_t littleSpace = 256 * mebibyte;
constexpr int oldestMake = 4;

bool isPractice(const Facts& facts) {
  return facts.theos.empty() || (facts.inDevice && facts.inDevice->isPracticeTheos);
}

bool hasBlank(const string& text) {
  return text.find_first_of(" \t\n") != string::npos;
}

Entry entryOf(const DeviceFacts& seen, const string& path) {
  const auto found = seen.theosEntries.find(path);
  return found == seen.theosEntries.end() ? Entry::Missing : found->second;
}

// The outermost link on the way to `path` whose target the device does not show; empty where there is none.
string astrayOnTheWay(const DeviceFacts& seen, const fs::path& path) {
  fs::path sofar;
  for (const auto& part : path) {
    sofar /= part;
    if (entryOf(seen, sofar.string()) == Entry::Astray) return sofar.string();
  }
  return {};
}

string astrayRemedy(const string& link) {
  return link +
         " in Theos's folder is a link to a place that is not there in the device, which shows Theos and the "
         "host's /usr; put the thing itself there.";
}

Finding bubblewrapFinding(const Facts& facts) {
  return facts.bubblewrapRefusal.empty() ? ok("bubblewrap", facts.bubblewrap.string() + " is there.")
                                         : problem("bubblewrap", facts.bubblewrapRefusal);
}

Finding startFinding(const Facts& facts) {
  const char* subject = "user namespaces";
  if (!facts.deviceRefusal.empty()) {
    // Another refusal is not the system's.
    const bool isSystems = facts.deviceRefusal.starts_with(setUpFailed);
    return problem(isSystems ? subject : "start", facts.deviceRefusal);
  }
  if (!facts.inDevice) return note(subject, "Not looked at, since no device starts until the rest is fixed.");
  return ok(subject, "A device starts, and its shell runs commands.");
}

Finding deviceFinding(const Facts& facts) {
  const char* subject = "device";
  const string path = facts.device.string();
  switch (facts.deviceFolder) {
    case Facts::DeviceFolder::OfAnotherUser:
      return problem(subject, path + " cannot be used by this user; choose another folder with --device.");
    case Facts::DeviceFolder::OtherFiles:
      return problem(subject,
                     path + " holds other files and is not a device; choose a new folder with --device.");
    case Facts::DeviceFolder::NotYetMade:
      return ok(subject, "It will be made at " + path + " by the first start.");
    case Facts::DeviceFolder::Good:
      break;
  }
  return ok(subject, path + " is there.");
}

Finding spaceFinding(const Facts& facts) {
  const char* subject = "disk space";
  const string sentence = std::to_string(facts.freeSpace / mebibyte) + " MiB are free for the device";
  if (facts.freeSpace < tooLittleSpace)
    return problem(subject, sentence + ", too little to build; make room.");
  if (facts.freeSpace < littleSpace)
    return note(subject, sentence + ", which large builds use up; make room.");
  return ok(subject, sentence + ".");
}

void addTheos(const Facts& facts, std::vector<Finding>& findings) {
  const char* subject = "Theos";
  if (!facts.theosRefusal.empty()) return findings.push_back(problem(subject, facts.theosRefusal));
  if (isPractice(facts)) {
    return findings.push_back(
        note(subject,
             "It is the practice Theos, which packages sources and compiles nothing; to "
             "compile, install Theos at ~/theos or name its folder with --theos."));
  }
  findings.push_back(ok(subject, facts.theos.string() + " is used."));
  if (hasBlank(facts.theos.string())) {
    findings.push_back(note(subject,
                            "Its path holds blanks, which the device hides, but builds outside of the device "
                            "fail; move it to a path without blanks."));
  }
  if (!facts.inDevice) return;
  if (!facts.inDevice->closed.empty()) {
    return findings.push_back(
        problem(subject, facts.inDevice->closed +
                             " in Theos's folder cannot be read by the device's user; run \"chmod -R "
                             "a+rX\" on that folder."));
  }
  // An incomplete folder is reported once, not again for what is missing in it.
  string told = "-";
  for (const string path : theosEntries) {
    const Entry entry = entryOf(*facts.inDevice, path);
    const bool isMark = path.ends_with(".git");
    if (entry == Entry::Present || (isMark && entry == Entry::Empty) || path.starts_with(told)) continue;
    const string link = astrayOnTheWay(*facts.inDevice, path);
    const string state = path + (entry == Entry::Empty ? " is empty" : " is missing");
    const string& remedy = path.starts_with("vendor/") ? submodules : wholeCopy;
    const string missing = fill("%@, and Theos does not build without it; %@.", {state, remedy});
    findings.push_back(problem(subject, link.empty() ? missing : astrayRemedy(link)));
    told = link.empty() ? path : link;
  }
}

Finding sdkFinding(const DeviceFacts& seen) {
  const char* subject = "SDKs";
  const Sdk* const newest = seen.newestSdk();
  if (const string link = astrayOnTheWay(seen, "sdks"); !link.empty())
    return problem(subject, astrayRemedy(link));
  if (newest == nullptr) {
    return problem(subject,
                   "There is none in Theos's folder sdks; put one there, such as iPhoneOS14.5.sdk, "
                   "or run bin/install-sdk of Theos.");
  }
  if (newest->state == Entry::Astray) return problem(subject, astrayRemedy("sdks/" + newest->name));
  if (newest->state != Entry::Present) {
    return problem(subject, "sdks/" + newest->name +
                                " in Theos's folder has neither headers nor libraries; unpack the whole "
                                "SDK there, or remove it.");
  }
  if (seen.isNewestSdkTooOld()) {
    return note(subject, "The newest is " + newest->name + ", and new projects are built for iOS " +
                             textOf(seen.target) +
                             "; put a newer one into Theos's folder sdks, or lower TARGET in each Makefile.");
  }
  return ok(subject, std::to_string(seen.sdks.size()) + " in Theos's folder sdks.");
}

// Empty where it started, whatever it then said.
string reasonNotToStart(const Start& trial) {
  const string said = trial.said.empty() ? "" : ": " + shortened(trial.said);
  if (trial.status == 124) return "it did not end within ten seconds";
  if (hasAny(trial.said, {"xec format error", "cannot execute binary file"})) {
    return "it is made for another processor or system";
  }
  if (trial.said.find("error while loading shared libraries") != string::npos)
    return "a library that it needs is missing" + said;
  if (trial.status == 126 || trial.status == 127) return "it could not be started" + said;
  // A closed pipe is what ends a program that says more than is listened to.
  if (trial.status > 128 && trial.status != 141)
    return "it was killed by signal " + std::to_string(trial.status - 128);
  return {};
}

Finding programFinding(const ProgramCheck& check, const Facts& facts) {
  const Need need = isPractice(facts) ? check.withPractice : check.withTheos;
  const Verdict verdict = need == Need::Required ? Verdict::Problem : Verdict::Note;
  const string subject = check.name;
  string remedy =
      check.package == nullptr ? toolchain : string("install it with \"apt install ") + check.package + "\"";
  const auto found = facts.inDevice->starts.find(subject);
  const Start trial = found == facts.inDevice->starts.end() ? Start{} : found->second;
  if (trial.path.empty() && check.package == nullptr) {
    const string path = toolchainFolder + "/bin/" + check.name;
    const Entry entry = entryOf(*facts.inDevice, path);
    if (entry == Entry::Astray) return {verdict, subject, astrayRemedy(path)};
    if (entry == Entry::Present)
      return {verdict, subject, path + " in Theos's folder may not be run; run \"chmod a+x\" on it."};
  }
  if (trial.path.empty()) {
    if (need == Need::None) {
      return note(subject,
                  "It is missing, but this Theos builds without it; where another needs it, " + remedy + ".");
    }
    return {verdict, subject, string("It is missing, and it is what ") + check.purpose + "; " + remedy + "."};
  }
  string reason = reasonNotToStart(trial);
  if (reason.empty() && (subject == "fakeroot" || subject == "perl") && trial.status != 0) {
    reason = "it fails with \"" + shortened(trial.said) + "\"";
    const string_view known = meaningOf(trial.said);
    if (!known.empty()) remedy = known.substr(0, known.size() - 1);
  }
  if (reason.empty()) {
    if (subject == "make" && versionIn(trial.said).first < oldestMake) {
      return problem(subject,
                     "It is \"" + trial.said + "\", and Theos needs GNU Make 4 or later; install that.");
    }
    return ok(subject, trial.path + " starts.");
  }
  // What is merely useful is used where it is there, and then stops the build.
  return {need == Need::None ? Verdict::Note : Verdict::Problem, subject,
          trial.path + " does not work: " + reason + "; " + remedy + "."};
}

void addPrograms(const Facts& facts, std::vector<Finding>& findings) {
  for (const auto& check : programs) {
    if (check.package == nullptr && facts.inDevice->closed.starts_with("toolchain")) continue;
    const string link = check.package == nullptr ? astrayOnTheWay(*facts.inDevice, toolchainFolder) : "";
    // Said once for the whole toolchain.
    if (!link.empty() && string(check.name) == "clang")
      findings.push_back(problem("toolchain", astrayRemedy(link)));
    if (link.empty()) findings.push_back(programFinding(check, facts));
  }
}

Finding fontFinding(const DeviceFacts& seen) {
  const char* subject = "fonts";
  const auto list = seen.starts.find("fc-list");
  if (list == seen.starts.end() || list->second.path.empty())
    return note(subject, "They cannot be listed; install \"fontconfig\" to have them looked at.");
  if (seen.arabicFonts == 0) {
    return note(subject,
                "None has Arabic letters, so Arabic texts are shown as boxes; install one with "
                "\"apt install fonts-noto-core\".");
  }
  return ok(subject, std::to_string(seen.arabicFonts) + " have Arabic letters.");
}

void addLastBuild(const Facts& facts, std::vector<Finding>& findings) {
  if (!facts.buildLog) return findings.push_back(ok("last build", "There is no log of one."));
  const auto told = explainBuildLog(*facts.buildLog, facts.buildLogCut);
  if (told.empty()) findings.push_back(ok("last build", "Its log shows no failure."));
  findings.insert(findings.end(), told.begin(), told.end());
}

// What to do where a stage of the trial failed for no better known reason. The project is Tweakbench's own,
// so the reason is in Theos or on the host.
struct StageRemedy {
  // The beginning of Theos's words for it; "" is before the first.
  string_view stage;
  string remedy;
};
const StageRemedy stageRemedies[] = {
    {"Preprocessing", "see that perl works, and renew vendor/logos in Theos's folder"},
    {"Compiling", "put another whole SDK into Theos's folder sdks, or another toolchain into toolchain"},
    {"Linking", toolchainWith("whose linker works") + ", or a whole SDK into sdks"},
    {"Generating debug", toolchainWith("with a working dsymutil")},
    {"Stripping", toolchainWith("with a working strip")},
    {"Merging", toolchainWith("with a working lipo")},
    {"Signing", "put a working ldid into " + toolchainFolder + "/bin in Theos's folder"},
    {"Making stage", "see that rsync and fakeroot work, and renew vendor/dm.pl in Theos's folder"},
    {"", wholeCopy},
};

// The path or name that a line says is missing; empty for another line.
string missingIn(string_view line) {
  for (const string_view words :
       {": No such file or directory", ": command not found", ": not found", " file not found"}) {
    string_view before = line.substr(0, std::min(line.find(words), line.size()));
    if (before.size() == line.size()) continue;
    if (before.ends_with('\'') || before.ends_with('"')) before.remove_suffix(1);
    before.remove_prefix(before.find_last_of(" :'\"") + 1);
    if (!before.empty()) return string(before);
  }
  return {};
}

string remedyFor(const FirstError& error, const DeviceFacts& seen) {
  const string theos = "/opt/theos/";
  const string missing = missingIn(error.line);
  const string_view known = meaningOf(error.line);
  // A missing makefile leaves a variable empty, which gives a path with two slashes.
  if (missing.find("//") != string::npos || missing.ends_with(".mk")) return string(notWhole);
  if (!known.empty()) return string(known);
  if (missing.starts_with("/var/Tweakyard/")) return "a step before it made nothing; " + toolchain + ".";
  if (missing.starts_with(theos + "toolchain/"))
    return missing.substr(theos.size()) + " is missing in Theos's folder; put a whole toolchain there.";
  if (missing.starts_with(theos))
    return missing.substr(theos.size()) + " is missing in Theos's folder; " + wholeCopy + ".";
  const bool isSdksPart = error.stage.starts_with("Compiling") || error.stage.starts_with("Linking");
  const bool isHeader = error.line.find("' file not found") != string::npos;
  if (isSdksPart && (missing.empty() || isHeader) && seen.isNewestSdkTooOld()) {
    return seen.newestSdk()->name + " is older than iOS " + textOf(seen.target) +
           ", for which new projects are built; put a newer SDK into Theos's folder sdks.";
  }
  if (isHeader) {
    if (missing.find("ubstrate") != string::npos)
      return "vendor/include or vendor/lib is not whole; " + submodules + ".";
    return "the SDK is not whole; put another one into Theos's folder sdks.";
  }
  if (!missing.empty()) {
    return missing +
           " is not there in the device, which shows Theos and the host's /usr; install it on the "
           "host, or change what asks for it.";
  }
  if (error.line.find("Permission denied") != string::npos)
    return "everybody must be able to read Theos's folder and to run its programs; run \"chmod -R a+rX\" on "
           "the folder and \"chmod a+x\" on the program.";
  for (const auto& [stage, remedy] : stageRemedies) {
    if (error.stage.starts_with(stage)) return remedy + ".";
  }
  return {};
}

Finding trialFinding(const Facts& facts, bool canBuildSoFar) {
  const char* subject = "trial build";
  if (!facts.trial) {
    return note(subject, facts.isQuick   ? "Left out, so nothing was tried."
                         : canBuildSoFar ? "None was made."
                                         : "Not made, since it cannot work until the rest is fixed.");
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

}  // namespace

std::vector<Finding> findingsFor(const Facts& facts) {
  std::vector<Finding> findings{bubblewrapFinding(facts), startFinding(facts), deviceFinding(facts),
                                spaceFinding(facts)};
  addTheos(facts, findings);
  if (facts.inDevice) {
    if (!isPractice(facts) && facts.inDevice->closed.empty()) findings.push_back(sdkFinding(*facts.inDevice));
    addPrograms(facts, findings);
    findings.push_back(fontFinding(*facts.inDevice));
  }
  addLastBuild(facts, findings);
  findings.push_back(trialFinding(facts, canBuild(findings)));
  return findings;
}

bool canBuild(const std::vector<Finding>& findings) {
  return std::none_of(findings.begin(), findings.end(),
                      [](const Finding& one) { return one.verdict == Verdict::Problem; });
}
