#include "workspace/ProjectOptions.h"

#include "core/FileManager.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/ItemName.h"
#include "workspace/Paths.h"

std::string projectAddress() {
  return fill("filza://view%@", {fill(paths::project, {listedProject()}) + "/"});
}

std::string packagesAddress() {
  const std::string folder = fill(paths::projectPackages, {listedProject()});
  return fill("filza://%@", {fileExistsAtPath(folder) ? folder + "/" : std::string(paths::packages)});
}

void deletePackages() {
  run_cmd("rm -rf %@", {paths::packages});
}

bool importProject(const std::string& typedPath) {
  if (!fileExistsAtPath(typedPath)) return false;
  const std::string name = lastPathComponent(typedPath);
  setListedProject(name);
  setCurrentProject(name);
  run_cmd("cp -r /%@ %@/", {typedPath, paths::projects});
  return true;
}

void exportProject(const std::string& typedPath) {
  run_cmd("cp -r %@ /var/%@", {fill(paths::project, {itemName(listedProject())}), typedPath});
}
