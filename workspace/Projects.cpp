#include "workspace/Projects.h"

#include "core/FileManager.h"
#include "core/History.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"

#include <cstdlib>
#include <functional>
#include <string_view>

namespace {

// Changes the text of a file, if it has one.
void rewrite(const std::string& path, Durability durability,
             const std::function<std::string(const std::string&)>& change) {
  const MaybeText text = stringWithContentsOfFile(path);
  if (text) writeToFileAtomically(path, change(*text), durability);
}

}  // namespace

std::string randomToken() {
  constexpr std::string_view alphabet = "abcdefghijklmnopqrstuvwxyz";
  constexpr int length = 8;
  std::string token;
  for (int index = 0; index < length; ++index) token += alphabet[arc4random() % alphabet.size()];
  return token;
}

void createProject(const std::string& typedName) {
  const std::string name = withoutBlanks(typedName);
  const std::string project = fill(paths::project, {name});
  keepHistory();
  if (!mayBeReadForEver(paths::templateArchive)) {
    // Before unzip replaces files of an existing project it asks, and after a captured run standard input is
    // the log, whose first letter may well mean "all".
    run_cmd("unzip %@ -d %@", {paths::templateArchive, project}, "UNZIP=-n");
  }
  chooseProject(name);

  const std::string package = fill("com.lanternfish12.%@", {randomToken()});
  // Deferred: what unzip has just written beside them is not on the disk yet either.
  rewrite(project + "/control", Durability::Deferred, [&](const std::string& text) {
    return replaceAll(replaceAll(text, "CC", name), "com.cc", package);
  });
  rewrite(project + "/Makefile", Durability::Deferred, [&](const std::string& text) {
    return replaceAll(replaceAll(text, "CC", name), "export", fill("export THEOS=%@", {theosPath()}));
  });
  run_cmd("mv %@/CC.plist %@/%@.plist", {project, project, name});
}

void renameProject(const std::string& typedName) {
  const std::string newName = withoutBlanks(typedName);
  const MaybeText oldName = itemName(currentProject());
  const std::string project = fill(paths::project, {newName});
  chooseProject(newName);
  run_kept_cmd("mv %@ %@", {fill(paths::project, {oldName}), project});
  for (const char* file : {"/control", "/Makefile"}) {
    rewrite(project + file, Durability::Durable,
            [&](const std::string& text) { return oldName ? replaceAll(text, *oldName, newName) : text; });
  }
  run_cmd("mv %@/%@.plist %@/%@.plist", {project, oldName, project, newName});
}

void deleteListedProject() {
  deleteProject(listedProject());
  setCurrentProject(std::nullopt);
}

void deleteProject(const MaybeText& name) {
  run_kept_cmd("rm -rf %@", {fill(paths::project, {itemName(name)})});
}

void deleteAllProjects() {
  run_kept_cmd("rm -rf %@/*", {paths::projects});
  setCurrentProject(std::nullopt);
}

std::string projectAddress() {
  return fill("filza://view%@", {fill(paths::project, {listedProject()}) + "/"});
}

std::string packagesAddress() {
  const std::string folder = fill(paths::projectPackages, {listedProject()});
  return fill("filza://%@", {fileExistsAtPath(folder) ? folder + "/" : std::string(paths::packages)});
}

void deletePackages() {
  run_kept_cmd("rm -rf %@", {paths::packages});
}

bool importProject(const std::string& typedPath) {
  if (!fileExistsAtPath(typedPath)) return false;
  const std::string name = lastPathComponent(typedPath);
  setListedProject(name);
  setCurrentProject(name);
  run_kept_cmd("cp -r /%@ %@/", {typedPath, paths::projects});
  return true;
}

void exportProject(const std::string& typedPath) {
  run_kept_cmd("cp -r %@ /var/%@", {fill(paths::project, {itemName(listedProject())}), typedPath});
}

MaybeText backUpProject() {
  const MaybeText name = itemName(listedProject());
  const std::string project = fill(paths::project, {name});
  const std::string backup = fill(paths::projectBackup, {name});
  if (!fileExistsAtPath(paths::backups)) run_cmd("mkdir %@", {paths::backups});
  if (!fileExistsAtPath(project)) return std::nullopt;
  keepHistory();
  NotedBackup noted(name.value_or(std::string()));
  run_cmd("rm -rf %@", {backup});
  const std::string copy = fill("mkdir %@ && cp -r %@ %@/", {backup, project, paths::backups});
  if (run_cmd_status(copy.c_str()) == 0) noted.isWhole();
  return backup;
}

std::vector<std::string> backupNames() {
  return contentsOfDirectoryAtPath(paths::backups).value_or(std::vector<std::string>{});
}

void restoreBackup(const std::string& name) {
  const MaybeText item = itemName(name);
  const std::string project = fill(paths::project, {item});
  run_kept_cmd("rm -rf %@ && cp -r %@ %@", {project, fill(paths::projectBackup, {item}), project});
}

void deleteAllBackups() {
  run_kept_cmd("rm -rf %@", {paths::backups});
}
