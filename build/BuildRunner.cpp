#include "build/BuildRunner.h"

#include "core/FileManager.h"
#include "core/run_cmd.h"
#include "core/run_logged.h"
#include "workspace/CurrentProject.h"
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

void runFilled(const char* command, std::initializer_list<MaybeText> values) {
  run_cmder(fill(command, values).c_str());
}

void collectPackages(const std::string& folder, const MaybeText& project) {
  if (!fileExistsAtPath(paths::packages)) run_cmder("mkdir /var/mobile/Documents/Tweakbench");
  if (!fileExistsAtPath(fill(paths::projectPackages, {project}))) {
    runFilled("mkdir /var/mobile/Documents/Tweakbench/%@", {project});
  }
  // Without a packages folder the move fails and leaves no package folder at all: the sign of a failed build.
  runFilled(
      "cd %@ && rm -rf /var/mobile/Documents/Tweakbench/%@ && mv packages "
      "/var/mobile/Documents/Tweakbench/%@",
      {folder, project, project});
}

}  // namespace

void runBuildJob(BuildVariant variant, const std::function<void()>& update) {
  if (!fileExistsAtPath(markerOf(variant))) {
    update();
    return;
  }
  removeBuildLog();
  redirectStandardStreams(paths::makeLog);
  const MaybeText project = currentProject();
  const std::string folder = fill(paths::projectIn, {paths::dataRoot, project});
  runFilled(commandOf(variant), {folder});
  collectPackages(folder, project);
}

void updateTheos() {
  removeItemAtPath(updateLog);
  run_cmder("mkdir /var/Tweakyard/tmp");
  redirectStandardStreams(updateLog);
  const MaybeText theos = theosPath();
  runFilled("export THEOS=%@ && %@/bin/update-theos", {theos, theos});
}

BuildResult collectBuildResult(BuildVariant variant) {
  cleanLog(paths::makeLog, variant);
  BuildResult result;
  result.log = stringWithContentsOfFile(paths::makeLog);
  result.project = currentProject();
  result.hasPackages = fileExistsAtPath(fill(paths::projectPackages, {result.project}));
  return result;
}

void removeBuildLog() {
  discardLog(paths::makeLog);
}
