#include "device/sandbox/HostPrograms.h"

#include "device/Refusal.h"

#include <sstream>
#include <unistd.h>

namespace device {

namespace fs = std::filesystem;

fs::path findProgram(const Environment& caller, const char* name) {
  std::istringstream folders(lookUp(caller, "PATH").value_or("/usr/bin:/bin"));
  for (std::string folder; std::getline(folders, folder, ':');) {
    fs::path program = fs::path(folder) / name;
    if (program.is_absolute() && access(program.c_str(), X_OK) == 0) return program;
  }
  return {};
}

fs::path findBubblewrap(const Environment& caller) {
  fs::path program = findProgram(caller, "bwrap");
  if (!program.empty()) return program;
  throw Refusal("bubblewrap is not installed; install it with \"apt install bubblewrap\".");
}

fs::path findTheos(const Options& options, const Environment& caller, const fs::path& home) {
  for (const auto& candidate : theosCandidates(options, caller, home)) {
    std::error_code error;
    fs::path whole = fs::canonical(candidate, error);
    if (!error && isTheos(whole)) return whole;
    if (options.theos) throw Refusal(candidate.string() + " is no Theos: it has no makefiles/common.mk.");
  }
  if (options.theosAccess == Options::Theos::Writable) {
    throw Refusal("--writable-theos needs a Theos, and none was found; give its folder with --theos.");
  }
  return {};
}

}  // namespace device
