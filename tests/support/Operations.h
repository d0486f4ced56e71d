// The operations that the menus lead to, by name.
#pragma once

#include "build/BuildRunner.h"
#include "core/Languages.h"
#include "core/Text.h"
#include "core/run_cmd.h"
#include "support/Device.h"
#include "support/SizeLimit.h"
#include "workspace/CurrentProject.h"
#include "workspace/FlexImport.h"
#include "workspace/ProjectFiles.h"
#include "workspace/Projects.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

inline std::string shownText(const std::string& contents) {
  if (contents.size() > 200) return "(long)";
  if (!isValidUTF8(contents)) return "(no text)";
  return '"' + replaceAll(replaceAll(contents, "\\", "\\\\"), "\n", "\\n") + '"';
}
inline std::string answer(bool is) {
  return is ? "yes" : "no";
}
inline std::string answer(const MaybeText& text) {
  return text ? shownText(*text) : "none";
}
inline std::string answer(std::vector<std::string> entries) {
  if (entries.size() > 1000) return std::to_string(entries.size()) + " entries";
  std::sort(entries.begin(), entries.end());
  std::string all;
  for (const std::string& entry : entries) all += (all.empty() ? "" : ", ") + entry;
  return all.empty() ? "nothing" : replaceAll(all, "\033", "\\e");
}
// Of what returns nothing.
template <typename Operation>
std::string done(const Operation& operation) {
  operation();
  return "";
}

using Operation = std::function<std::string(const std::string& first, const std::string& second)>;
inline const std::map<std::string, Operation> operations{
    {"header", [](auto& name, auto&) { return answer(createHeader(name)); }},
    {"rename file", [](auto& from, auto& to) { return done([&] { renameFile(from, to); }); }},
    {"delete file", [](auto& name, auto&) { return done([&] { deleteProjectFile(name); }); }},
    {"create", [](auto& name, auto&) { return done([&] { createProject(name); }); }},
    {"rename", [](auto& name, auto&) { return done([&] { renameProject(name); }); }},
    {"delete", [](auto& name, auto&) { return done([&] { deleteProject(name); }); }},
    {"delete listed", [](auto&, auto&) { return done(deleteListedProject); }},
    {"export", [](auto& path, auto&) { return done([&] { exportProject(path); }); }},
    {"build", [](auto&, auto&) { return done([] { runBuildJob(BuildVariant::Package, [] {}); }); }},
    {"collect", [](auto&, auto&) { return done([] { collectBuildResult(BuildVariant::Package); }); }},
    {"import", [](auto& path, auto&) { return answer(importProject(path)); }},
    {"back up", [](auto&, auto&) { return answer(backUpProject()); }},
    {"backups", [](auto&, auto&) { return answer(backupNames()); }},
    {"restore", [](auto& name, auto&) { return done([&] { restoreBackup(name); }); }},
    {"delete backups", [](auto&, auto&) { return done(deleteAllBackups); }},
    {"choose", [](auto& name, auto&) { return answer(chooseProject(name)); }},
    {"current", [](auto& name, auto&) { return done([&] { setCurrentProject(name); }); }},
    {"no current", [](auto&, auto&) { return done([] { setCurrentProject(std::nullopt); }); }},
    {"listed", [](auto& name, auto&) { return done([&] { setListedProject(name); }); }},
    {"theos", [](auto&, auto&) { return done(recordTheosPath); }},
    {"converter", [](auto&, auto&) { return done(installConverter); }},
    {"listing", [](auto&, auto&) { return answer(currentProjectLabel()) + ": " + answer(MUArray()); }},
    {"list", [](auto&, auto&) { return done(ArraySetUp); }},
    {"check", [](auto& entry, auto&) { return answer(!fileCheckRejects(entry)); }},
    {"pick", [](auto& entry, auto&) { return done([&] { SS(entry); }); }},
    {"pick on a full disk",
     [](auto& entry, auto&) {
       const SizeLimit full(std::filesystem::file_size(device::application + "Checker.plist"));
       return done([&] { SS(entry); });
     }},
    {"print", [](auto& text,
                 auto&) { return answer(run_logged("echo " + text, device::application + "Checkers.log")); }},
    {"speak",
     [](auto& language, auto&) {
       return done([&] {
         setLanguage(language == "Arabic"    ? Language::Arabic
                     : language == "English" ? Language::English
                                             : Language::Automatic);
       });
     }},
    {"patches", [](auto&, auto&) { return answer(harvestFlexMenu()); }},
    {"convert", [](auto& title, auto&) { return done([&] { convertFlexPatch(title); }); }},
    {"cd", [](auto& folder, auto&) { return done([&] { std::filesystem::current_path(folder); }); }},
};

// "NAME FIRST -> SECOND" ("\s" is a blank, "\e" the escape character, "%@" is `name`); what it answers. The
// longest name of an operation that fits is taken.
inline std::string perform(const std::string& line, const std::string& name = {}) {
  const auto* operation = &operations.at("cd");
  std::size_t length = 0;
  for (const auto& [each, function] : operations) {
    if (line != each && !line.starts_with(each + ' ')) continue;
    if (each.size() < length) continue;
    operation = &function;
    length = each.size();
  }
  if (length == 0) throw std::invalid_argument(line);
  const auto typed = [&name](const std::string& text) {
    return replaceAll(replaceAll(replaceAll(text, "\\s", " "), "\\e", "\033"), "%@", name);
  };
  const std::string rest = line.size() > length ? line.substr(length + 1) : "";
  const std::size_t arrow = std::min(rest.find(" -> "), rest.size());
  try {
    return (*operation)(typed(rest.substr(0, arrow)),
                        typed(arrow == rest.size() ? "" : rest.substr(arrow + 4)));
  } catch (const std::out_of_range&) {
    return "out of range";
  }
}

inline void performAll(const std::vector<std::string>& lines, const std::string& name = {}) {
  for (const std::string& line : lines) perform(line, name);
}
