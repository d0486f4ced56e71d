#include "device/doctor/Checks.h"

#include "device/doctor/BuildLog.h"
#include "device/doctor/DeviceProbe.h"
#include "device/doctor/Trial.h"
#include "device/sandbox/Sandbox.h"

#include <algorithm>

namespace device::doctor {
namespace {

using std::string;
using std::string_view;

// What a missing or broken program means to a build.
enum class Need { Required, Useful, None };

struct ProgramCheck {
  const char* name;
  Need withTheos;
  Need withPractice;
  // What builds have it for, as in "it is what …".
  const char* purpose;
  // What to do where it is missing.
  const char* remedy;
};

// Where the toolchain of Theos is looked for.
constexpr const char* kToolchainFolder = "toolchain/linux/iphone";

constexpr ProgramCheck kPrograms[] = {
    {"make", Need::Required, Need::Required, "runs every build", "install it with \"apt install make\""},
    {"unzip", Need::Required, Need::Required, "unpacks the template of a new project",
     "install it with \"apt install unzip\""},
    {"dpkg-deb", Need::None, Need::Required, "makes the practice Theos's packages",
     "install it with \"apt install dpkg\""},
    {"perl", Need::Required, Need::None, "runs Theos's preprocessor and packager",
     "install it with \"apt install perl\""},
    {"rsync", Need::Required, Need::None, "fills the stage of a package",
     "install it with \"apt install rsync\""},
    {"fakeroot", Need::Useful, Need::None, "gives the files of a package their owners",
     "install it with \"apt install fakeroot\""},
    {"clang", Need::Required, Need::None, "compiles the sources", kToolchain},
    {"ldid", Need::Required, Need::None, "signs what was compiled", kToolchain},
    {"lipo", Need::Useful, Need::None, "joins the parts for several processors", kToolchain},
    {"plistutil", Need::Useful, Need::None, "converts the property lists under FINALPACKAGE",
     "install it with \"apt install libplist-utils\""},
};

struct EntryCheck {
  const char* path;
  const char* remedy;
};

// Without one of them Theos stops before it reads a project.
constexpr EntryCheck kTheosEntries[] = {
    {"bin", kWholeCopy},
    {"makefiles/tweak.mk", kWholeCopy},
    {"vendor/include", kSubmodules},
    {"vendor/include/.git", kSubmodules},
    {"vendor/lib", kSubmodules},
    {"vendor/lib/.git", kSubmodules},
    {"vendor/logos", kSubmodules},
    {"vendor/dm.pl", kSubmodules},
};

constexpr std::uintmax_t kMebibyte = 1U << 20;
constexpr std::uintmax_t kTooLittleSpace = 16 * kMebibyte;
constexpr std::uintmax_t kLittleSpace = 256 * kMebibyte;
constexpr int kOldestMake = 4;

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
string astrayOnTheWay(const DeviceFacts& seen, const std::filesystem::path& path) {
  std::filesystem::path sofar;
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
  const char* subject = "bubblewrap";
  if (!facts.bubblewrapRefusal.empty()) return problem(subject, facts.bubblewrapRefusal);
  return ok(subject, facts.bubblewrap.string() + " is there.");
}

Finding startFinding(const Facts& facts) {
  const char* subject = "user namespaces";
  if (!facts.deviceRefusal.empty()) {
    // Another refusal is not the system's.
    const bool isSystems = facts.deviceRefusal.starts_with(kSetUpFailed);
    return problem(isSystems ? subject : "start", facts.deviceRefusal);
  }
  if (!facts.inDevice)
    return note(subject, "Not looked at, since no device can be started before the rest is mended.");
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
                     path + " holds other files and is no device; choose a new folder with --device.");
    case Facts::DeviceFolder::NotYetMade:
      return ok(subject, "It will be made at " + path + " by the first start.");
    case Facts::DeviceFolder::Good:
      break;
  }
  return ok(subject, path + " is there.");
}

Finding spaceFinding(const Facts& facts) {
  const char* subject = "disk space";
  const string sentence = std::to_string(facts.freeSpace / kMebibyte) + " MiB are free for the device";
  if (facts.freeSpace < kTooLittleSpace)
    return problem(subject, sentence + ", too little to build; make room.");
  if (facts.freeSpace < kLittleSpace)
    return note(subject, sentence + ", which large builds use up; make room.");
  return ok(subject, sentence + ".");
}

void addTheos(const Facts& facts, std::vector<Finding>& findings) {
  const char* subject = "Theos";
  if (!facts.theosRefusal.empty()) {
    findings.push_back(problem(subject, facts.theosRefusal));
    return;
  }
  if (isPractice(facts)) {
    findings.push_back(note(subject,
                            "It is the practice Theos, which packages sources and compiles nothing; to "
                            "compile, install Theos at ~/theos or name its folder with --theos."));
    return;
  }
  findings.push_back(ok(subject, facts.theos.string() + " is used."));
  if (hasBlank(facts.theos.string())) {
    findings.push_back(note(subject,
                            "Its path holds blanks, which the device hides, but builds outside of the device "
                            "fail; move it to a path without blanks."));
  }
  if (!facts.inDevice) return;
  if (!facts.inDevice->closed.empty()) {
    findings.push_back(
        problem(subject, facts.inDevice->closed +
                             " in Theos's folder cannot be read by the device's user; run \"chmod -R "
                             "a+rX\" on that folder."));
    return;
  }
  // A folder that is not whole is told once, not again for what is missing in it.
  string told = "-";
  for (const auto& check : kTheosEntries) {
    const string path = check.path;
    const Entry entry = entryOf(*facts.inDevice, path);
    const bool isMark = path.ends_with(".git");
    if (entry == Entry::Present || (isMark && entry == Entry::Empty) || path.starts_with(told)) continue;
    const string link = astrayOnTheWay(*facts.inDevice, path);
    const string state = path + (entry == Entry::Empty ? " is empty" : " is missing");
    findings.push_back(
        problem(subject, link.empty() ? state + ", and Theos does not build without it; " + check.remedy + "."
                                      : astrayRemedy(link)));
    told = link.empty() ? path : link;
  }
}

void addSdks(const Facts& facts, std::vector<Finding>& findings) {
  if (!facts.inDevice || isPractice(facts) || !facts.inDevice->closed.empty()) return;
  const char* subject = "SDKs";
  const string link = astrayOnTheWay(*facts.inDevice, "sdks");
  const auto& sdks = facts.inDevice->sdks;
  const Sdk* const newest = facts.inDevice->newestSdk();
  if (!link.empty()) {
    findings.push_back(problem(subject, astrayRemedy(link)));
  } else if (newest == nullptr) {
    findings.push_back(
        problem(subject,
                "There is none in Theos's folder sdks; put one there, such as iPhoneOS14.5.sdk, "
                "or run bin/install-sdk of Theos."));
  } else if (newest->state == Entry::Astray) {
    findings.push_back(problem(subject, astrayRemedy("sdks/" + newest->name)));
  } else if (newest->state != Entry::Present) {
    findings.push_back(
        problem(subject, "sdks/" + newest->name +
                             " in Theos's folder has neither headers nor libraries; unpack the whole "
                             "SDK there, or remove it."));
  } else if (facts.inDevice->isNewestSdkTooOld()) {
    findings.push_back(
        note(subject, "The newest is " + newest->name + ", and new projects are built for iOS " +
                          textOf(facts.inDevice->target) +
                          "; put a newer one into Theos's folder sdks, or lower TARGET in each Makefile."));
  } else {
    findings.push_back(ok(subject, std::to_string(sdks.size()) + " in Theos's folder sdks."));
  }
}

// Empty where it started, whatever it then said.
string reasonNotToStart(const Start& trial) {
  const string said = trial.said.empty() ? "" : ": " + shortened(trial.said);
  if (trial.status == 124) return "it did not end within ten seconds";
  if (trial.said.find("xec format error") != string::npos ||
      trial.said.find("cannot execute binary file") != string::npos) {
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

bool isOfToolchain(const ProgramCheck& check) {
  return string(check.remedy) == kToolchain;
}

Finding programFinding(const ProgramCheck& check, const Facts& facts) {
  const Need need = isPractice(facts) ? check.withPractice : check.withTheos;
  const Verdict verdict = need == Need::Required ? Verdict::Problem : Verdict::Note;
  const string subject = check.name;
  const auto found = facts.inDevice->starts.find(subject);
  const Start trial = found == facts.inDevice->starts.end() ? Start{} : found->second;
  if (trial.path.empty() && isOfToolchain(check)) {
    const string path = string(kToolchainFolder) + "/bin/" + check.name;
    const Entry entry = entryOf(*facts.inDevice, path);
    if (entry == Entry::Astray) return {verdict, subject, astrayRemedy(path)};
    if (entry == Entry::Present)
      return {verdict, subject, path + " in Theos's folder may not be run; run \"chmod a+x\" on it."};
  }
  if (trial.path.empty()) {
    if (need == Need::None) {
      return note(subject,
                  string("It is missing, but this Theos builds without it; where another needs it, ") +
                      check.remedy + ".");
    }
    return {verdict, subject,
            string("It is missing, and it is what ") + check.purpose + "; " + check.remedy + "."};
  }
  string reason = reasonNotToStart(trial);
  if (reason.empty() && (subject == "fakeroot" || subject == "perl") && trial.status != 0)
    reason = "it fails with \"" + shortened(trial.said) + "\"";
  if (reason.empty()) {
    if (subject == "make" && versionIn(trial.said).first < kOldestMake) {
      return problem(subject,
                     "It is \"" + trial.said + "\", and Theos needs GNU Make 4 or later; install that.");
    }
    return ok(subject, trial.path + " starts.");
  }
  // What is merely useful is used where it is there, and then stops the build.
  return {need == Need::None ? Verdict::Note : Verdict::Problem, subject,
          trial.path + " does not work: " + reason + "; " + check.remedy + "."};
}

void addPrograms(const Facts& facts, std::vector<Finding>& findings) {
  if (!facts.inDevice) return;
  for (const auto& check : kPrograms) {
    if (isOfToolchain(check) && facts.inDevice->closed.starts_with("toolchain")) continue;
    const string link = isOfToolchain(check) ? astrayOnTheWay(*facts.inDevice, kToolchainFolder) : "";
    // Said once for the whole toolchain.
    if (!link.empty() && string(check.name) == "clang")
      findings.push_back(problem("toolchain", astrayRemedy(link)));
    if (link.empty()) findings.push_back(programFinding(check, facts));
  }
}

void addFonts(const Facts& facts, std::vector<Finding>& findings) {
  if (!facts.inDevice) return;
  const char* subject = "fonts";
  const auto list = facts.inDevice->starts.find("fc-list");
  if (list == facts.inDevice->starts.end() || list->second.path.empty()) {
    findings.push_back(
        note(subject, "They cannot be listed; install \"fontconfig\" to have them looked at."));
  } else if (facts.inDevice->arabicFonts == 0) {
    findings.push_back(note(subject,
                            "None has Arabic letters, so Arabic texts are shown as boxes; install one with "
                            "\"apt install fonts-noto-core\"."));
  } else {
    findings.push_back(ok(subject, std::to_string(facts.inDevice->arabicFonts) + " have Arabic letters."));
  }
}

void addLastBuild(const Facts& facts, std::vector<Finding>& findings) {
  if (!facts.buildLog) {
    findings.push_back(ok("last build", "There is no log of one."));
    return;
  }
  const auto told = explainBuildLog(*facts.buildLog, facts.buildLogCut);
  if (told.empty()) findings.push_back(ok("last build", "Its log tells of no failure."));
  findings.insert(findings.end(), told.begin(), told.end());
}

}  // namespace

std::vector<Finding> findingsFor(const Facts& facts) {
  std::vector<Finding> findings{bubblewrapFinding(facts), startFinding(facts), deviceFinding(facts),
                                spaceFinding(facts)};
  addTheos(facts, findings);
  addSdks(facts, findings);
  addPrograms(facts, findings);
  addFonts(facts, findings);
  addLastBuild(facts, findings);
  findings.push_back(trialFinding(facts, canBuild(findings)));
  return findings;
}

bool canBuild(const std::vector<Finding>& findings) {
  return std::none_of(findings.begin(), findings.end(),
                      [](const Finding& one) { return one.verdict == Verdict::Problem; });
}

}  // namespace device::doctor
