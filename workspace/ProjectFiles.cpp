#include "workspace/ProjectFiles.h"

#include "core/FileManager.h"
#include "core/History.h"
#include "core/PropertyList.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"

namespace {

constexpr const char* fullPathKey = "FullPath";

std::vector<std::string> projectFiles;

}  // namespace

const std::vector<std::string>& MUArray() {
  return projectFiles;
}

void ArraySetUp() {
  projectFiles = contentsOfDirectoryAtPath(fill(paths::project, {currentProject()}))
                     .value_or(std::vector<std::string>{});
}

bool fileCheckRejects(const std::string& entry) {
  const std::string file = fill(paths::projectFile, {currentProject(), entry});
  const std::string question = fill("test -f %@ && echo Hola || echo Noooop", {file});
  const MaybeText answer = run_logged(question, paths::checkersLog);
  return answer && answer->find("Noooop") != std::string::npos;
}

MaybeText pickedFile() {
  return propertyListValue(paths::checkerPlist, fullPathKey);
}

bool isBelowProject(std::string_view path) {
  std::size_t begin = 0;
  for (std::size_t end = 0; end != std::string_view::npos; begin = end + 1) {
    end = path.find('/', begin);
    const std::string_view part = path.substr(begin, end - begin);
    if (part.empty() || part == "." || part == "..") return false;
  }
  return true;
}

void SS(const std::string& entry) {
  // The old pick goes first, so that a name which cannot be recorded leaves no file picked rather than
  // another one.
  setPropertyListValue(paths::checkerPlist, fullPathKey, std::nullopt);
  setPropertyListValue(paths::checkerPlist, fullPathKey, fill(paths::projectFile, {currentProject(), entry}));
}

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
  run_kept_cmd("mv %@ %@", {fill(paths::projectFile, {folder, itemName(oldName)}),
                            fill(paths::projectFile, {folder, withoutBlanks(typedName)})});
  setCurrentProject(project);
}

void deleteProjectFile(const std::string& entry) {
  const MaybeText listed = itemName(listedProject());
  const MaybeText project = listed ? listed : itemName(currentProject());
  run_kept_cmd("rm -rf %@", {fill(paths::projectFile, {project, itemName(entry)})});
}
