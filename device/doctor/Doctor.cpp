#include "device/doctor/Doctor.h"

#include "device/Refusal.h"
#include "device/Visible.h"
#include "device/doctor/Checks.h"
#include "device/doctor/LookAround.h"
#include "device/launcher/Commands.h"
#include "device/sandbox/Environment.h"
#include "device/Process.h"

#include <algorithm>
#include <iostream>
#include <signal.h>
#include <unistd.h>

namespace device::doctor {
namespace {

struct Look {
  const char* word;
  const char* colour;
};

Look lookOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::Ok:
      return {"ok", "\033[32m"};
    case Verdict::Note:
      return {"note", "\033[33m"};
    case Verdict::Problem:
      return {"problem", "\033[1;31m"};
  }
  return {"", ""};
}

bool wantsColour() {
  const Environment caller = callerEnvironment();
  return isatty(STDOUT_FILENO) != 0 && !lookUp(caller, "NO_COLOR") &&
         lookUp(caller, "TERM").value_or("dumb") != "dumb";
}

std::string padded(std::string text, std::size_t width) {
  text.resize(std::max(width, text.size()), ' ');
  return text;
}

// What the doctor is at, for as long as this object lives, where there is a terminal to show it.
class Progress {
 public:
  void say(const char* text) const {
    if (isShown_) std::cerr << "\r\033[K" << text << std::flush;
  }
  ~Progress() { say(""); }

 private:
  bool isShown_ =
      isatty(STDERR_FILENO) != 0 && lookUp(callerEnvironment(), "TERM").value_or("dumb") != "dumb";
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
  facts.trial = tryBuild(device);
  return facts;
}

int report(const Facts& facts) {
  const auto findings = findingsFor(facts);
  const bool isColoured = wantsColour();
  for (const auto& finding : findings) {
    const Look look = lookOf(finding.verdict);
    const std::string word = padded(look.word, 8);
    std::cout << (isColoured ? look.colour + word + "\033[0m" : word) << padded(finding.subject, 16)
              << visible(finding.sentence) << "\n";
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
  if (!std::cout) throw Refusal("The report could not be written.");
  return problems == 0 ? 0 : 1;
}

}  // namespace

int examine(const Options& options) {
  try {
    return report(gather(options));
  } catch (const Interrupted& interrupted) {
    raise(interrupted.signal);
    return kFailed;
  }
}

}  // namespace device::doctor
