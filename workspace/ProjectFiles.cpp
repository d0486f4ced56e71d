#include "workspace/ProjectFiles.h"

#include "core/FileManager.h"
#include "core/History.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/ItemName.h"
#include "workspace/Paths.h"

bool createHeader(const std::string& typedName) {
  const std::string name = withoutBlanks(typedName);
  const std::string project = fill(paths::project, {itemName(currentProject())});
  const std::string header = project + "/" + name + ".h";
  const std::string tweak = project + "/Tweak.x";
  keepHistory();
  createFileAtPath(header);
  if (!mayBeReadForEver(tweak)) {
    run_cmd("echo -e \"#import \"%@.h\"\n$(cat %@)\" > %@", {name, tweak, tweak});
  }
  return fileExistsAtPath(header);
}

std::vector<std::string> listedProjectFiles() {
  return contentsOfDirectoryAtPath(fill(paths::project, {listedProject()}))
      .value_or(std::vector<std::string>{});
}

void renameFile(const std::string& oldName, const std::string& typedName) {
  const MaybeText project = listedProject();
  const MaybeText folder = itemName(project);
  run_cmd("mv %@ %@", {fill(paths::projectFile, {folder, itemName(oldName)}),
                       fill(paths::projectFile, {folder, withoutBlanks(typedName)})});
  if (project) {
    setCurrentProject(*project);
  } else {
    removeCurrentProject();
  }
}
