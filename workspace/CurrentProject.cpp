#include "workspace/CurrentProject.h"

#include "core/PropertyList.h"
#include "workspace/Paths.h"

namespace {
constexpr const char* chooseKey = "Choose";
constexpr const char* filesKey = "Files";
constexpr const char* theosPathKey = "TheosPath";
}  // namespace

MaybeText currentProject() {
  return propertyListValue(paths::choosePlist, chooseKey);
}

MaybeText setCurrentProject(const std::string& name) {
  auto settings = PropertyList::initWithContentsOfFile(paths::choosePlist);
  if (!settings) return std::nullopt;
  settings->setObject(name, chooseKey);
  settings->writeToFile(paths::choosePlist);
  return settings->objectForKey(theosPathKey);
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
