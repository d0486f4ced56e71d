#include "workspace/ProjectFiles.h"

#include "core/FileManager.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"

bool createHeader(const std::string& typedName) {
  const std::string name = withoutBlanks(typedName);
  const MaybeText project = currentProject();
  const std::string header = fill("/var/Tweakyard/Projects/%@/%@.h", {project, name});
  createFileAtPath(header);
  if (!mayBeReadForEver(fill("/var/Tweakyard/Projects/%@/Tweak.x", {project}))) {
    run_cmd(fill("echo -e \"#import \"%@.h\"\n$(cat /var/Tweakyard/Projects/%@/Tweak.x)\" > "
                 "/var/Tweakyard/Projects/%@/Tweak.x",
                 {name, project, project})
                .c_str());
  }
  return fileExistsAtPath(header);
}

std::vector<std::string> listedProjectFiles() {
  return contentsOfDirectoryAtPath(fill(paths::project, {listedProject()}))
      .value_or(std::vector<std::string>{});
}

void renameFile(const std::string& oldName, const std::string& typedName) {
  const MaybeText project = listedProject();
  run_cmd(fill("mv /var/Tweakyard/Projects/%@/%@ /var/Tweakyard/Projects/%@/%@",
               {project, oldName, project, withoutBlanks(typedName)})
              .c_str());
  if (project) {
    setCurrentProject(*project);
  } else {
    removeCurrentProject();
  }
}
