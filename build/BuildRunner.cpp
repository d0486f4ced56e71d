#include "build/BuildRunner.h"

#include "core/FileManager.h"
#include "core/run_cmd.h"
#include "core/run_logged.h"
#include "workspace/CurrentProject.h"
#include "workspace/ItemName.h"
#include "workspace/Paths.h"

namespace {

constexpr const char* updateLog = "/var/Tweakyard/tmp/SuccessfullyUpdated.log";
// Nothing ever makes the install build's marker, so its button always updates and never builds.
constexpr const char* installMarker = "/Applications/Tweakbench.app/SuccessfullyUpdated.log";

const char* markerOf(BuildVariant variant) {
  return variant == BuildVariant::Package ? updateLog : installMarker;
}

const char* commandOf(BuildVariant variant) {
  return variant == BuildVariant::Package ? "cd %@ && make package" : "cd %@ && make package install";
}

void collectPackages(const std::string& folder, const MaybeText& project) {
  const std::string packages = fill(paths::projectPackages, {project});
  if (!fileExistsAtPath(paths::packages)) run_cmder("mkdir %@", {paths::packages});
  if (!fileExistsAtPath(packages)) run_cmder("mkdir %@", {packages});
  // Without a packages folder the move fails and leaves no package folder at all: the sign of a failed build.
  run_cmder("cd %@ && rm -rf %@ && mv packages %@", {folder, packages, packages});
}

}  // namespace

void runBuildJob(BuildVariant variant, const std::function<void()>& update) {
  if (!fileExistsAtPath(markerOf(variant))) {
    update();
    return;
  }
  removeBuildLog();
  redirectStandardStreams(paths::makeLog);
  const MaybeText project = itemName(currentProject());
  const std::string folder = fill(paths::project, {project});
  run_cmder(commandOf(variant), {folder});
  collectPackages(folder, project);
}

void updateTheos() {
  removeItemAtPath(updateLog);
  run_cmder("mkdir /var/Tweakyard/tmp");
  redirectStandardStreams(updateLog);
  const MaybeText theos = theosPath();
  run_cmder("export THEOS=%@ && %@/bin/update-theos", {theos, theos});
}

BuildResult collectBuildResult(BuildVariant variant) {
  cleanLog(paths::makeLog, variant);
  BuildResult result;
  result.log = stringWithContentsOfFile(paths::makeLog);
  result.project = itemName(currentProject());
  result.hasPackages = fileExistsAtPath(fill(paths::projectPackages, {result.project}));
  return result;
}

void removeBuildLog() {
  discardLog(paths::makeLog);
}
