#include "workspace/Selection.h"

#include "core/FileManager.h"
#include "core/PropertyList.h"
#include "core/run_logged.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"

namespace {

constexpr const char* fullPathKey = "FullPath";

std::vector<std::string>& files() {
  static std::vector<std::string> names;
  return names;
}

// A resource of the application's own: absent when it was not shipped or has been removed.
MaybeText pathForResource(const std::string& name, const std::string& type) {
  std::string path = paths::applicationFolder + name + "." + type;
  if (!fileExistsAtPath(path)) return std::nullopt;
  return path;
}

}  // namespace

const std::vector<std::string>& MUArray() {
  return files();
}

void ArraySetUp() {
  files() = contentsOfDirectoryAtPath(fill(paths::project, {currentProject()}))
                .value_or(std::vector<std::string>{});
}

std::vector<std::string> projectNames() {
  return contentsOfDirectoryAtPath(paths::projects).value_or(std::vector<std::string>{});
}

bool chooseProject(const std::string& name) {
  setCurrentProject(name);
  setListedProject(name);
  return fileExistsAtPath(fill(paths::project, {name}));
}

bool fileCheckRejects(const std::string& entry) {
  const std::string file = fill(paths::projectFile, {currentProject(), entry});
  const std::string question = fill("test -f %@ && echo Hola || echo Noooop", {file});
  const MaybeText answer = run_logged(question, paths::checkersLog);
  return answer && answer->find("Noooop") != std::string::npos;
}

MaybeText pickedFile() {
  const MaybeText list = pathForResource("Checker", "plist");
  return list ? propertyListValue(*list, fullPathKey) : std::nullopt;
}

void SS(const std::string& entry) {
  const MaybeText list = pathForResource("Checker", "plist");
  if (!list) return;
  // The old pick goes first, so that a name which cannot be recorded leaves no file picked rather than
  // another one.
  removePropertyListValue(*list, fullPathKey);
  setPropertyListValue(*list, fullPathKey, fill(paths::projectFile, {currentProject(), entry}));
}
