#include "device/session/ReducedMotion.h"

#include "core/LauncherContract.h"
#include "device/Refusal.h"
#include "device/sandbox/Capture.h"
#include "device/sandbox/HostPrograms.h"

#include <charconv>
#include <fstream>
#include <string>

namespace device {
namespace {

namespace fs = std::filesystem;

constexpr int kMostLines = 10'000;

bool isZero(const std::string& number) {
  double value = 1;
  const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
  return read.ec == std::errc() && value == 0;
}

// Plasma writes the slider of its animation speed into the group KDE; "instant" is a factor of zero.
bool isOffInPlasma(const fs::path& settings) {
  std::error_code error;
  if (!fs::is_regular_file(settings, error)) return false;
  std::ifstream file(settings);
  const std::string key = "AnimationDurationFactor=";
  bool inGroup = false;
  std::string line;
  for (int lines = 0; lines < kMostLines && std::getline(file, line); ++lines) {
    if (line.starts_with('[')) inGroup = line == "[KDE]";
    if (inGroup && line.starts_with(key)) return isZero(line.substr(key.size()));
  }
  return false;
}

bool isOffInGnome(const Environment& caller, std::chrono::milliseconds patience) {
  const fs::path program = findProgram(caller, "gsettings");
  if (program.empty()) return false;
  try {
    const auto answer =
        capture({program.string(), "get", "org.gnome.desktop.interface", "enable-animations"}, patience);
    return answer.status == 0 && answer.output == "false\n";
  } catch (const Refusal&) {
    return false;
  }
}

}  // namespace

bool prefersReducedMotion(const Environment& caller, const fs::path& home,
                          std::chrono::milliseconds patience) {
  fs::path settings = lookUp(caller, "XDG_CONFIG_HOME").value_or("");
  // A relative value is to be ignored.
  if (!settings.is_absolute()) settings = home / ".config";
  return isOffInPlasma(settings / "kdeglobals") || isOffInGnome(caller, patience);
}

void addReducedMotion(Environment& environment) {
  environment[reducedMotionVariable] = "1";
}

}  // namespace device
