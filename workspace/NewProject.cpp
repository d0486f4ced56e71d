#include "workspace/NewProject.h"

#include "core/FileManager.h"
#include "core/run_cmd.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"

#include <cstdlib>
#include <functional>
#include <string_view>

namespace {

void rewrite(const std::string& path, const std::function<std::string(const std::string&)>& change) {
  const MaybeText text = stringWithContentsOfFile(path);
  // Deferred: what unzip has just written beside it is not on the disk yet either.
  if (text) writeToFileAtomically(path, change(*text), Durability::Deferred);
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
  if (!mayBeReadForEver(paths::templateArchive)) {
    // Before unzip replaces files of an existing project it asks, and after a captured run standard input is
    // the log, whose first letter may well mean "all".
    run_cmd("unzip %@ -d %@", {paths::templateArchive, project}, "UNZIP=-n");
  }
  const MaybeText theos = setCurrentProject(name);
  setListedProject(name);

  const std::string package = fill("com.lanternfish12.%@", {randomToken()});
  rewrite(project + "/control", [&](const std::string& text) {
    return replaceAll(replaceAll(text, "CC", name), "com.cc", package);
  });
  rewrite(project + "/Makefile", [&](const std::string& text) {
    return replaceAll(replaceAll(text, "CC", name), "export", fill("export THEOS=%@", {theos}));
  });
  run_cmd("mv %@/CC.plist %@/%@.plist", {project, project, name});
}
