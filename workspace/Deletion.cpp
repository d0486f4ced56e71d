#include "workspace/Deletion.h"

#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"

void deleteProjectFile(const std::string& entry) {
  const MaybeText listed = listedProject();
  run_cmd(fill("rm -rf /var/Tweakyard/Projects/%@/%@", {listed ? listed : currentProject(), entry}).c_str());
}

void deleteListedProject() {
  run_cmd(fill("rm -rf /var/Tweakyard/Projects/%@", {listedProject()}).c_str());
  removeCurrentProject();
}

void deleteProject(const std::string& name) {
  run_cmd(fill("rm -rf /var/Tweakyard/Projects/%@", {name}).c_str());
}

void deleteAllProjects() {
  run_cmd("rm -rf /var/Tweakyard/Projects/*");
  removeCurrentProject();
}
