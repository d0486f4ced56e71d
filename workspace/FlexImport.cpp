#include "workspace/FlexImport.h"

#include "core/FileManager.h"
#include "core/NSLog.h"
#include "core/run_cmd.h"
#include "core/run_logged.h"
#include "workspace/CurrentProject.h"
#include "workspace/FlexMenu.h"

namespace {

constexpr const char* menuLog = "/Applications/Tweakbench.app/Getter.log";
constexpr const char* conversionLog = "/Applications/Tweakbench.app/titleANDObj.log";

void removeWorkFolder() {
  run_cmd("rm -rf /var/mobile/Documents/Wexley88");
}

}  // namespace

std::vector<std::string> harvestFlexMenu() {
  removeWorkFolder();
  const MaybeText menu = run_logged("ftt", menuLog);
  if (menu) writeToFileAtomically(menuLog, cleanedFlexMenu(*menu), Durability::Deferred);
  const std::string cleaned = stringWithContentsOfFile(menuLog).value_or(std::string());
  const std::string_view loggedPart = std::string_view(cleaned).substr(0, longestLogLine);
  NSLog(fill("arrayOfComponents == %@", {described(splitLines(loggedPart))}));
  return flexMenuEntries(cleaned);
}

void convertFlexPatch(const std::string& title) {
  removeItemAtPath(conversionLog);
  redirectStandardStreams(conversionLog);
  const MaybeText project = listedProject();
  const std::string key = flexPatchKey(title);
  run_cmd(fill("cd /var/mobile/Documents && (echo \"%@\") | ftt", {key}).c_str());
  if (fileExistsAtPath(fill("/var/Tweakyard/Projects/%@/FlexPatch%@", {project, key}))) {
    run_cmd(fill("rm -rf /var/Tweakyard/Projects/%@/FlexPatch%@", {project, key}).c_str());
  }
  // With no project the result lands beside the projects, where it is seen.
  run_cmd(fill("mv /var/mobile/Documents/Wexley88/Tweak.xm /var/mobile/Documents/Wexley88/FlexPatch%@ && mv "
               "/var/mobile/Documents/Wexley88/FlexPatch%@ /var/Tweakyard/Projects/%@/",
               {key, key, project.value_or("")})
              .c_str());
  removeWorkFolder();
}

void removeFlexMenu() {
  removeItemAtPath(menuLog);
}
