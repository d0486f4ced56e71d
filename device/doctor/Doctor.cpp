#include "device/doctor/Doctor.h"

#include "device/Refusal.h"
#include "device/doctor/Checks.h"
#include "device/doctor/LookAround.h"
#include "device/sandbox/Environment.h"

#include <algorithm>
#include <iostream>
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

// Paths and what programs said may hold anything, the terminal's own commands too.
std::string printable(std::string text) {
  for (char& character : text) {
    const auto code = static_cast<unsigned char>(character);
    if (code < 0x20 || code == 0x7f) character = '?';
  }
  return text;
}

}  // namespace

int examine(const Options& options) {
  const auto findings = findingsFor(lookAround(options));
  const bool isColoured = wantsColour();
  for (const auto& finding : findings) {
    const Look look = lookOf(finding.verdict);
    const std::string word = padded(look.word, 8);
    std::cout << (isColoured ? look.colour + word + "\033[0m" : word) << padded(finding.subject, 16)
              << printable(finding.sentence) << "\n";
  }
  const auto problems = std::count_if(findings.begin(), findings.end(),
                                      [](const Finding& one) { return one.verdict == Verdict::Problem; });
  std::cout << (canBuild(findings) ? std::string("A build can work.")
                                   : "A build cannot work: " + std::to_string(problems) +
                                         (problems == 1 ? " problem." : " problems."))
            << std::endl;
  if (!std::cout) throw Refusal("The report could not be written.");
  return canBuild(findings) ? 0 : 1;
}

}  // namespace device::doctor
