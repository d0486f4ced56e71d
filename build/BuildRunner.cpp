#include "build/BuildRunner.h"

#include "core/FileManager.h"
#include "core/History.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"

#include <filesystem>
#include <map>
#include <stdexcept>
#include <sys/stat.h>
#include <utility>

namespace {

const char* markerOf(BuildVariant variant) {
  return variant == BuildVariant::Package ? paths::updateLog : paths::installUpdateLog;
}

void collectPackages(const std::string& folder, const MaybeText& project) {
  const std::string packages = fill(paths::projectPackages, {project});
  if (!fileExistsAtPath(paths::packages)) run_cmder("mkdir %@", {paths::packages});
  if (!fileExistsAtPath(packages)) run_cmder("mkdir %@", {packages});
  // Without a packages folder the move fails and leaves no package folder at all: the sign of a failed build.
  run_cmder("cd %@ && rm -rf %@ && mv packages %@", {folder, packages, packages});
}

// The packages in a folder, and what changes about each that is written again, even under the same name.
std::map<std::string, std::pair<ino_t, std::pair<time_t, long>>> packagesIn(const std::string& folder) {
  std::map<std::string, std::pair<ino_t, std::pair<time_t, long>>> found;
  for (const auto& name : contentsOfDirectoryAtPath(folder).value_or(std::vector<std::string>())) {
    struct stat status {};
    if (pathExtension(name) == "deb" && lstat((std::filesystem::path(folder) / name).c_str(), &status) == 0)
      found[name] = {status.st_ino, {status.st_ctim.tv_sec, status.st_ctim.tv_nsec}};
  }
  return found;
}

}  // namespace

// All that differs from a tap on Make Package: no update of Theos comes first, nothing goes to the log or
// depends on the current project, make gets arguments and its status counts, and packages that no new ones
// replace stay.
int buildProject(const std::string& project, const std::vector<std::string>& arguments) {
  const std::string folder = fill(paths::project, {project});
  const auto before = packagesIn(folder + "/packages");
  std::string command = fill("cd %@ && make", {folder});
  for (const auto& argument : arguments) command.append(" ").append(quoted(argument));
  keepHistory();
  const int status = run_cmd_status(command.c_str());
  const auto after = packagesIn(folder + "/packages");
  if (status != 0 || after.empty() || after == before) return status;
  collectPackages(folder, project);
  if (fileExistsAtPath(folder + "/packages"))
    throw std::runtime_error("The packages could not be moved to " + fill(paths::projectPackages, {project}) +
                             ".");
  return status;
}

void runBuildJob(BuildVariant variant, const std::function<void()>& update) {
  if (!fileExistsAtPath(markerOf(variant))) {
    update();
    return;
  }
  discardLog(paths::makeLog);
  redirectStandardStreams(paths::makeLog);
  const MaybeText project = itemName(currentProject());
  const std::string folder = fill(paths::project, {project});
  // What make does to the project, too.
  keepHistory();
  run_cmder(variant == BuildVariant::Package ? "cd %@ && make package" : "cd %@ && make package install",
            {folder});
  collectPackages(folder, project);
}

void updateTheos() {
  removeItemAtPath(paths::updateLog);
  run_cmder("mkdir %@", {paths::updateFolder});
  redirectStandardStreams(paths::updateLog);
  const MaybeText theos = theosPath();
  run_cmder("export THEOS=%@ && %@/bin/update-theos", {theos, theos});
}

BuildResult collectBuildResult(BuildVariant variant) {
  cleanLog(paths::makeLog, variant);
  BuildResult result;
  result.log = contentsOfFile(paths::makeLog);
  if (result.log && !isValidUTF8(*result.log)) result.log = withReplacementCharacters(*result.log);
  // One that is large and no text at all grows to three times its size.
  if (result.log && result.log->size() > largestTextFile) result.log.reset();
  result.project = itemName(currentProject());
  result.hasPackages = fileExistsAtPath(fill(paths::projectPackages, {result.project}));
  return result;
}
