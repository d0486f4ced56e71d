#include "workspace/Deletion.h"

#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"

namespace {

// A name of nothing that the shell keeps counts as none: as an empty field it would turn the command line
// against the folder that the named item lies in.
MaybeText named(const MaybeText& name) {
  const bool isEmpty = name && name->find_first_not_of(" \t\n") == std::string::npos;
  return isEmpty ? std::nullopt : name;
}

}  // namespace

void deleteProjectFile(const std::string& entry) {
  const MaybeText listed = named(listedProject());
  run_cmd(
      fill("rm -rf /var/Tweakyard/Projects/%@/%@", {listed ? listed : named(currentProject()), named(entry)})
          .c_str());
}

void deleteListedProject() {
  run_cmd(fill("rm -rf /var/Tweakyard/Projects/%@", {named(listedProject())}).c_str());
  removeCurrentProject();
}

void deleteProject(const std::string& name) {
  run_cmd(fill("rm -rf /var/Tweakyard/Projects/%@", {named(name)}).c_str());
}

void deleteAllProjects() {
  run_cmd("rm -rf /var/Tweakyard/Projects/*");
  removeCurrentProject();
}
