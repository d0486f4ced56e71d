#include "workspace/ProjectName.h"

#include "core/FileManager.h"
#include "core/Languages.h"
#include "core/PropertyList.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/ItemName.h"
#include "workspace/Paths.h"

namespace {

void rewriteName(const std::string& path, const std::string& oldName, const std::string& newName) {
  const MaybeText text = stringWithContentsOfFile(path);
  if (!text) return;
  writeToFileAtomically(path, oldName.empty() ? *text : replaceAll(*text, oldName, newName));
}

}  // namespace

void renameProject(const std::string& typedName) {
  const std::string name = withoutBlanks(typedName);
  const MaybeText oldName = itemName(currentProject());
  const std::string project = fill(paths::project, {name});
  setCurrentProject(name);
  setListedProject(name);
  run_cmd("mv %@ %@", {fill(paths::project, {oldName}), project});
  for (const char* file : {"/control", "/Makefile"}) {
    rewriteName(project + file, oldName.value_or(std::string()), name);
  }
  run_cmd("mv %@/%@.plist %@/%@.plist", {project, oldName, project, name});
}

void setLanguage(Language language) {
  switch (language) {
    case Language::Arabic:
      return setPropertyListValue(langFilePlist, languageKey, "AR");
    case Language::Automatic:
      return setPropertyListValue(langFilePlist, languageKey, "Auto");
    case Language::English:
      return removePropertyListValue(langFilePlist, languageKey);
  }
}
