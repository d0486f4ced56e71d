#include "workspace/Backups.h"

#include "core/FileManager.h"
#include "core/History.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/ItemName.h"
#include "workspace/Paths.h"

MaybeText backUpProject() {
  const MaybeText name = itemName(listedProject());
  const std::string project = fill(paths::project, {name});
  const std::string backup = fill(paths::projectBackup, {name});
  if (!fileExistsAtPath(paths::backups)) run_cmd("mkdir %@", {paths::backups});
  if (!fileExistsAtPath(project)) return std::nullopt;
  NotedBackup noted(name.value_or(std::string()));
  run_cmd("rm -rf %@", {backup});
  const std::string copy = fill("mkdir %@ && cp -r %@ %@/", {backup, project, paths::backups});
  if (run_cmd_status(copy.c_str()) == 0) noted.isWhole();
  return backup;
}

std::vector<std::string> backupNames() {
  return contentsOfDirectoryAtPath(paths::backups).value_or(std::vector<std::string>{});
}

void restoreBackup(const std::string& name) {
  const MaybeText item = itemName(name);
  const std::string project = fill(paths::project, {item});
  run_cmd("rm -rf %@ && cp -r %@ %@", {project, fill(paths::projectBackup, {item}), project});
}

void chooseRestoredProject(const std::string& name) {
  setCurrentProject(name);
  setListedProject(name);
}

void deleteAllBackups() {
  run_cmd("rm -rf %@", {paths::backups});
}
