#include "workspace/CurrentProject.h"

#include "core/FileManager.h"
#include "core/LauncherContract.h"
#include "core/PropertyList.h"
#include "core/run_cmd.h"
#include "workspace/Paths.h"

#include <algorithm>

namespace {
constexpr const char* chooseKey = "Choose";
constexpr const char* filesKey = "Files";
constexpr const char* theosPathKey = "TheosPath";
}  // namespace

MaybeText currentProject() {
  return propertyListValue(paths::choosePlist, chooseKey);
}

void setCurrentProject(const std::string& name) {
  setPropertyListValue(paths::choosePlist, chooseKey, name);
}

void removeCurrentProject() {
  removePropertyListValue(paths::choosePlist, chooseKey);
}

MaybeText listedProject() {
  return propertyListValue(paths::filesPlist, filesKey);
}

void setListedProject(const std::string& name) {
  setPropertyListValue(paths::filesPlist, filesKey, name);
}

MaybeText theosPath() {
  return propertyListValue(paths::choosePlist, theosPathKey);
}

void setTheosPath(const std::string& path) {
  setPropertyListValue(paths::choosePlist, theosPathKey, path);
}

std::vector<std::string> projectNames() {
  return contentsOfDirectoryAtPath(paths::projects).value_or(std::vector<std::string>{});
}

bool chooseProject(const std::string& name) {
  setCurrentProject(name);
  setListedProject(name);
  return fileExistsAtPath(fill(paths::project, {name}));
}

void installConverter() {
  if (!fileExistsAtPath(paths::converter)) run_cmd("mv %@ %@", {paths::shippedConverter, paths::converter});
}

bool theosIsPresent() {
  return std::any_of(theosCandidates.begin(), theosCandidates.end(),
                     [](const TheosCandidate& candidate) { return candidate.exists(); });
}

void recordTheosPath() {
  for (const TheosCandidate& candidate : theosCandidates) {
    if (candidate.exists()) setTheosPath(candidate.recorded);
  }
}

void createProjectsFolder() {
  if (!fileExistsAtPath(paths::projects)) createDirectoryAtPath(paths::projects);
}

std::string currentProjectLabel() {
  const MaybeText name = currentProject();
  return name ? lastPathComponent(fill(paths::project, {name})) : std::string();
}
