#include "workspace/Backups.h"

#include "core/FileManager.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"

MaybeText backUpProject() {
  const MaybeText project = listedProject();
  if (!fileExistsAtPath(paths::backups)) run_cmd("mkdir /var/mobile/Documents/TweakbenchBackups");
  if (!fileExistsAtPath(fill(paths::project, {project}))) return std::nullopt;
  run_cmd(fill("rm -rf /var/mobile/Documents/TweakbenchBackups/%@", {project}).c_str());
  run_cmd(fill("mkdir /var/mobile/Documents/TweakbenchBackups/%@ && cp -r /var/Tweakyard/Projects/%@ "
               "/var/mobile/Documents/TweakbenchBackups/",
               {project, project})
              .c_str());
  return fill(paths::projectBackup, {project});
}

std::vector<std::string> backupNames() {
  return contentsOfDirectoryAtPath(paths::backups).value_or(std::vector<std::string>{});
}

void restoreBackup(const std::string& name) {
  run_cmd(fill("rm -rf /var/Tweakyard/Projects/%@ && cp -r /var/mobile/Documents/TweakbenchBackups/%@ "
               "/var/Tweakyard/Projects/%@",
               {name, name, name})
              .c_str());
}

void chooseRestoredProject(const std::string& name) {
  setCurrentProject(name);
  setListedProject(name);
}

void deleteAllBackups() {
  run_cmd("rm -rf /var/mobile/Documents/TweakbenchBackups");
}
