#include "workspace/Deletion.h"

#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/ItemName.h"
#include "workspace/Paths.h"

void deleteProjectFile(const std::string& entry) {
  const MaybeText listed = itemName(listedProject());
  const MaybeText project = listed ? listed : itemName(currentProject());
  run_cmd("rm -rf %@", {fill(paths::projectFile, {project, itemName(entry)})});
}

void deleteListedProject() {
  deleteProject(listedProject());
  removeCurrentProject();
}

void deleteProject(const MaybeText& name) {
  run_cmd("rm -rf %@", {fill(paths::project, {itemName(name)})});
}

void deleteAllProjects() {
  run_cmd("rm -rf %@/*", {paths::projects});
  removeCurrentProject();
}
