// tweakbench doctor: looks from outside the application at what builds need, and says what is wrong.
#include "device/Process.h"
#include "device/Visible.h"
#include "device/doctor/Checks.h"
#include "device/folder/Beneath.h"
#include "device/launcher/Commands.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <iomanip>
#include <iostream>

namespace {

// Above the time limits of everything that is tried in the device together.
constexpr auto probeLimit = std::chrono::seconds(180);
constexpr auto trialLimit = std::chrono::seconds(300);
constexpr std::size_t logEnd = 4 << 20;
constexpr const char* buildLog = "Applications/Tweakbench.app/MakeLog.log";
// Scripts that the device shows. The first prints what Checks.h reads; the second makes a project out of the
// template, builds it, and ends with 0 if a package came out.
constexpr const char* probeScript = "/.host/tweakbench/doctor-probe";
constexpr const char* trialScript = "/.host/tweakbench/doctor-trial";

// A device of the doctor's own, with the Theos that the options name, so that the user's device is neither
// needed, changed nor locked. Removed with this object.
class PassingDevice {
 public:
  // Throws Refusal.
  explicit PassingDevice(const Options& options) : theos_(options.theos) {
    const fs::path parent = baseFolder(callerEnvironment(), "TMPDIR", "/tmp");
    folder_ = parent / "tweakbench-doctor-XXXXXX";
    if (mkdtemp(folder_.data()) == nullptr)
      refuseWithError("No folder could be made in " + parent.string() + ":");
  }
  ~PassingDevice() {
    std::error_code error;
    fs::remove_all(folder_, error);
  }
  PassingDevice(const PassingDevice&) = delete;
  PassingDevice& operator=(const PassingDevice&) = delete;

  // Throws as capture() does.
  Captured runScript(const char* script, std::chrono::milliseconds limit) const {
    std::vector<std::string> words{"/proc/self/exe", "--device", folder_ + "/device"};
    if (theos_) words.insert(words.end(), {"--theos", theos_->string()});
    words.insert(words.end(), {"exec", "/bin/sh", script});
    return capture(words, limit);
  }

 private:
  std::optional<fs::path> theos_;
  std::string folder_;
};

// The launcher's sentence, without its name in front.
std::string sentenceIn(const std::string& errors) {
  const std::string line = errors.substr(0, errors.find('\n'));
  const std::string name = "tweakbench: ";
  return line.starts_with(name) ? line.substr(name.size()) : line;
}

void lookInDevice(const PassingDevice& device, Facts& facts) {
  const Captured probe = device.runScript(probeScript, probeLimit);
  if (probe.status == launcherFailed) {
    facts.deviceRefusal = sentenceIn(probe.errors);
  } else if (probe.status != 0) {
    facts.deviceRefusal = "A command in the device ended with status " + std::to_string(probe.status) + ": " +
                          sentenceIn(probe.errors);
  } else {
    facts.inDevice = readProbe(probe.output);
  }
}

// In the nearest folder on the way that exists; 0 if it cannot be looked at.
std::uintmax_t freeSpaceAt(fs::path path) {
  std::error_code error;
  while (!fs::exists(path, error) && !error && path.has_relative_path()) path = path.parent_path();
  const auto space = fs::space(path, error);
  return error ? 0 : space.available;
}

void lookAtDeviceFolder(const Caller& caller, Facts& facts) {
  facts.freeSpace = freeSpaceAt(facts.device);
  const Descriptor folder(open(facts.device.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder) {
    facts.deviceFolder =
        errno == ENOENT ? Facts::DeviceFolder::NotYetMade : Facts::DeviceFolder::OfAnotherUser;
    return;
  }
  const auto names = namesIn(folder.get());
  if (names && names->empty()) return;
  const bool isOwn = !caller.isSettled || statusOf(folder.get()).st_uid == caller.account.user;
  facts.deviceFolder = !exists(folder.get(), "lock") ? Facts::DeviceFolder::OtherFiles
                       : isOwn                       ? Facts::DeviceFolder::Good
                                                     : Facts::DeviceFolder::OfAnotherUser;
  if (facts.deviceFolder != Facts::DeviceFolder::Good) return;
  // One byte more tells whether there is more.
  facts.buildLog = readBeneath(folder.get(), buildLog, logEnd + 1, LongFile::End);
  facts.buildLogCut = facts.buildLog && facts.buildLog->size() > logEnd;
}

// Why `step` was refused; empty where it was not.
template <typename Step>
std::string refusalOf(Step step) {
  try {
    step();
    return {};
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
}

Facts lookAround(const Options& options, const PassingDevice& device) {
  Facts facts;
  const Caller caller(options);
  facts.device = caller.device;
  lookAtDeviceFolder(caller, facts);
  facts.theosRefusal =
      refusalOf([&] { facts.theos = findTheos(options, caller.environment, caller.account.home); });
  facts.bubblewrapRefusal = refusalOf([&] { facts.bubblewrap = findBubblewrap(caller.environment); });
  if (facts.theosRefusal.empty() && facts.bubblewrapRefusal.empty()) lookInDevice(device, facts);
  return facts;
}

// By verdict.
constexpr struct {
  const char* word;
  const char* colour;
} looks[] = {{"ok", "\033[32m"}, {"note", "\033[33m"}, {"problem", "\033[1;31m"}};

// Whether the stream is a terminal that knows sequences.
bool hasSequences(int stream) {
  return isatty(stream) != 0 && lookUp(callerEnvironment(), "TERM").value_or("dumb") != "dumb";
}

// What the doctor is at, for as long as this object lives, where there is a terminal to show it.
class Progress {
 public:
  void say(const char* text) const {
    if (isShown_) std::cerr << "\r\033[K" << text << std::flush;
  }
  ~Progress() { say(""); }

 private:
  bool isShown_ = hasSequences(STDERR_FILENO);
};

Facts gather(const Options& options) {
  const Interruption interruption;
  const PassingDevice device(options);
  const Progress progress;
  progress.say("Looking at what builds need …");
  Facts facts = lookAround(options, device);
  facts.isQuick = options.isQuick;
  if (facts.isQuick || !facts.inDevice || !canBuild(findingsFor(facts))) return facts;
  progress.say("Building a new project …");
  const Captured build = device.runScript(trialScript, trialLimit);
  // The launcher's own words are there only where nothing was built.
  facts.trial = Trial{build.status, build.output + build.errors};
  return facts;
}

int report(const Facts& facts) {
  const auto findings = findingsFor(facts);
  const bool isColoured = hasSequences(STDOUT_FILENO) && !lookUp(callerEnvironment(), "NO_COLOR");
  std::cout << std::left;
  for (const auto& finding : findings) {
    const auto& [word, colour] = looks[static_cast<int>(finding.verdict)];
    std::cout << (isColoured ? colour : "") << std::setw(8) << word << (isColoured ? "\033[0m" : "")
              << std::setw(16) << finding.subject << visible(finding.sentence) << "\n";
  }
  const auto problems = std::count_if(findings.begin(), findings.end(),
                                      [](const Finding& one) { return one.verdict == Verdict::Problem; });
  if (problems != 0) {
    std::cout << "A build cannot work: " << problems << (problems == 1 ? " problem." : " problems.");
  } else {
    std::cout << (facts.trial ? "A build works."
                              : "Nothing was found that stops builds, but none was tried.");
  }
  std::cout << std::endl;
  if (!std::cout) throw Refusal("The report could not be written to standard output.");
  return problems == 0 ? 0 : 1;
}

}  // namespace

int examine(const Options& options) {
  return report(gather(options));
}
