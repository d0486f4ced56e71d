#include "workspace/Deletion.h"

#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"

namespace {

// An empty record counts as none: as an empty field it would turn the command line against the folder of all
// projects.
MaybeText named(const MaybeText& project) {
  return project && project->empty() ? std::nullopt : project;
}

}  // namespace

void deleteProjectFile(const std::string& entry) {
  const MaybeText listed = named(listedProject());
  run_cmd(fill("rm -rf /var/Tweakyard/Projects/%@/%@", {listed ? listed : named(currentProject()), entry})
              .c_str());
}

void deleteListedProject() {
  run_cmd(fill("rm -rf /var/Tweakyard/Projects/%@", {named(listedProject())}).c_str());
  removeCurrentProject();
}

void deleteProject(const std::string& name) {
  run_cmd(fill("rm -rf /var/Tweakyard/Projects/%@", {name}).c_str());
}

void deleteAllProjects() {
  run_cmd("rm -rf /var/Tweakyard/Projects/*");
  removeCurrentProject();
}
