#include "workspace/FlexImport.h"

#include "core/FileManager.h"
#include "core/NSLog.h"
#include "core/run_cmd.h"
#include "core/run_logged.h"
#include "workspace/CurrentProject.h"
#include "workspace/FlexMenu.h"
#include "workspace/ItemName.h"
#include "workspace/Paths.h"

namespace {

constexpr const char* menuLog = "/Applications/Tweakbench.app/Getter.log";
constexpr const char* conversionLog = "/Applications/Tweakbench.app/titleANDObj.log";

constexpr const char* workFolder = "/var/mobile/Documents/Wexley88";

void removeWorkFolder() {
  run_cmd("rm -rf %@", {workFolder});
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
  const MaybeText project = itemName(listedProject());
  const std::string key = flexPatchKey(title);
  run_cmd("cd /var/mobile/Documents && (echo \"%@\") | ftt", {key});
  const MaybeText name = itemName("FlexPatch" + key);
  const std::string older = fill(paths::projectFile, {project, name});
  if (fileExistsAtPath(older)) run_cmd("rm -rf %@", {older});
  // With no project the result lands beside the projects, where it is seen.
  const std::string result = fill("%@/%@", {workFolder, name});
  run_cmd("mv %@/Tweak.xm %@ && mv %@ %@/",
          {workFolder, result, result, fill(paths::project, {project.value_or("")})});
  removeWorkFolder();
}

void removeFlexMenu() {
  removeItemAtPath(menuLog);
}
