#include "workspace/CurrentProject.h"

#include "core/FileManager.h"
#include "core/LauncherContract.h"
#include "core/PropertyList.h"
#include "core/run_cmd.h"
#include "workspace/Paths.h"

#include <algorithm>
#include <string_view>

namespace {
constexpr const char* chooseKey = "Choose";
constexpr const char* filesKey = "Files";
constexpr const char* theosPathKey = "TheosPath";
}  // namespace

MaybeText currentProject() {
  return propertyListValue(paths::choosePlist, chooseKey);
}

void setCurrentProject(const MaybeText& name) {
  setPropertyListValue(paths::choosePlist, chooseKey, name);
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

MaybeText itemName(const MaybeText& name) {
  // Not even in pairs: a second name in the line may close what the first one opens, as "{" and "x,}" do.
  constexpr std::string_view neverLiteral{"\0\n;&|<>()$`'\"\\{", 15};
  constexpr std::string_view blanks = " \t";
  if (!name || name->empty() || name->find_first_of(neverLiteral) != std::string::npos) return std::nullopt;
  const std::string_view path = std::string_view(*name).substr(0, name->find_first_of(blanks));
  // The shell takes further words as paths in the working directory.
  if (name->find_first_of("*?[~#/", path.size()) != std::string::npos) return std::nullopt;
  if (blanks.find(name->back()) != std::string_view::npos) return std::nullopt;
  bool isBelow = false;
  for (std::size_t from = 0; from <= path.size();) {
    const std::string_view part = path.substr(from, path.find('/', from) - from);
    from += part.size() + 1;
    const std::string_view literal = part.substr(0, part.find_first_of("*?["));
    const bool isDots = !part.empty() && literal.find_first_not_of('.') == std::string_view::npos;
    // Some shells match ".." with ".*" and ".[.]".
    if (part == ".." || (isDots && !literal.empty() && literal.size() < part.size())) return std::nullopt;
    isBelow = isBelow || (!part.empty() && (!isDots || literal.empty()));
  }
  return isBelow ? name : std::nullopt;
}
