#include "workspace/StartUp.h"

#include "core/FileManager.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"

#include <algorithm>
#include <array>

namespace {

struct TheosCandidate {
  const char* tested;
  const char* recorded;
};

constexpr std::array<TheosCandidate, 5> theosCandidates{{
    {"/var/theos/", "/var/theos"},
    {"/opt/theos/", "/opt/theos"},
    {"/theos", "/theos"},
    {"/var/mobile/theos", "/var/mobile/theos"},
    {"/var/mobile/Documents/theos", "/var/mobile/Documents/theos"},
}};

bool exists(const TheosCandidate& candidate) {
  return fileExistsAtPath(candidate.tested);
}

}  // namespace

void installConverter() {
  if (!fileExistsAtPath("/usr/bin/ftt")) run_cmd("mv /Applications/Tweakbench.app/ftt /usr/bin/ftt");
}

bool theosIsPresent() {
  return std::any_of(theosCandidates.begin(), theosCandidates.end(), exists);
}

void recordTheosPath() {
  for (const TheosCandidate& candidate : theosCandidates) {
    if (exists(candidate)) setTheosPath(candidate.recorded);
  }
}

void createProjectsFolder() {
  if (!fileExistsAtPath(paths::projects)) createDirectoryAtPath(paths::projects);
}

std::string currentProjectLabel() {
  const MaybeText name = currentProject();
  return name ? lastPathComponent(fill(paths::project, {name})) : std::string();
}
