#include "workspace/StartUp.h"

#include "core/FileManager.h"
#include "core/TheosCandidates.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"

#include <algorithm>

void installConverter() {
  if (!fileExistsAtPath("/usr/bin/ftt")) run_cmd("mv /Applications/Tweakbench.app/ftt /usr/bin/ftt");
}

bool theosIsPresent() {
  return std::any_of(theosCandidates.begin(), theosCandidates.end(),
                     [](const TheosCandidate& candidate) { return candidate.exists(); });
}

void recordTheosPath() {
  for (const TheosCandidate& candidate : theosCandidates) {
    if (candidate.exists()) setTheosPath(candidate.recorded);
  }
}

void createProjectsFolder() {
  if (!fileExistsAtPath(paths::projects)) createDirectoryAtPath(paths::projects);
}

std::string currentProjectLabel() {
  const MaybeText name = currentProject();
  return name ? lastPathComponent(fill(paths::project, {name})) : std::string();
}
