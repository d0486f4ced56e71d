// What each operation changes, and nothing else: steps.txt, line by line. The grammar stands at the head of
// that file.
#include "core/Languages.h"
#include "core/run_cmd.h"
#include "support/Device.h"
#include "support/Sections.h"
#include "support/Shell.h"
#include "support/SizeLimit.h"
#include "support/StandardStreams.h"
#include "support/Tree.h"
#include "workspace/CurrentProject.h"
#include "workspace/FlexImport.h"
#include "workspace/ProjectFiles.h"
#include "workspace/Projects.h"

#include <algorithm>
#include <functional>
#include <map>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::string>;

std::string shown(const std::string& contents) {
  if (contents.size() > 200) return "(long)";
  if (!isValidUTF8(contents)) return "(no text)";
  return '"' + replaceAll(replaceAll(contents, "\\", "\\\\"), "\n", "\\n") + '"';
}
std::string answer(bool is) {
  return is ? "yes" : "no";
}
std::string answer(const MaybeText& text) {
  return text ? shown(*text) : "none";
}
std::string answer(Lines entries) {
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

// All that operations can change, by name.
Tree everything() {
  Tree all = treeAt(device::projects);
  for (const auto& [path, contents] : treeAt(device::documents)) all[device::documents + path] = contents;
  for (const auto& [list, key] : {std::pair("Choose", "Choose"),
                                  {"Files", "Files"},
                                  {"Choose", "TheosPath"},
                                  {"Checker", "FullPath"},
                                  {"LangFile", "Language"}}) {
    if (const MaybeText value = device::setting(list, key)) all[std::string("=") + key] = *value;
  }
  for (const char* list : {"Choose", "Files", "Checker", "LangFile"}) {
    const std::string path = device::application + list + ".plist";
    if (fileExistsAtPath(path)) all[path];
  }
  for (const std::string& place : {device::application + "ftt", std::string("/usr/bin/ftt")}) {
    // The real one is large.
    std::error_code none;
    if (std::filesystem::file_size(place, none) < 200) all[place] = fileAt(place);
  }
  return all;
}

const std::map<std::string, std::function<std::string(const std::string&, const std::string&)>> operations{
    {"header", [](auto& name, auto&) { return answer(createHeader(name)); }},
    {"rename file", [](auto& from, auto& to) { return done([&] { renameFile(from, to); }); }},
    {"delete file", [](auto& name, auto&) { return done([&] { deleteProjectFile(name); }); }},
    {"create", [](auto& name, auto&) { return done([&] { createProject(name); }); }},
    {"rename", [](auto& name, auto&) { return done([&] { renameProject(name); }); }},
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
    {"cd", [](auto& folder, auto&) { return done([&] { ASSERT_EQ(chdir(folder.c_str()), 0); }); }},
};

std::string did(const std::string& line) {
  // The longest name that the line begins with.
  const auto* operation = &*operations.begin();
  for (const auto& each : operations) {
    const bool fits = line == each.first || line.starts_with(each.first + ' ');
    if (fits && (!line.starts_with(operation->first) || each.first.size() > operation->first.size()))
      operation = &each;
  }
  EXPECT_TRUE(line.starts_with(operation->first)) << line;
  const auto typed = [](const std::string& text) {
    return replaceAll(replaceAll(text, "\\s", " "), "\\e", "\033");
  };
  const std::string rest =
      line.size() > operation->first.size() ? line.substr(operation->first.size() + 1) : "";
  const std::size_t arrow = std::min(rest.find(" -> "), rest.size());
  try {
    return operation->second(typed(rest.substr(0, arrow)),
                             typed(arrow == rest.size() ? "" : rest.substr(arrow + 4)));
  } catch (const std::out_of_range&) {
    return "out of range";
  }
}

TEST(Steps, ChangeWhatIsWrittenAndNothingElse) {
  const auto sections = sectionsOf("/.host/tweakbench/tests/steps.txt");
  ASSERT_GT(sections.size(), 10U);
  for (const auto& [title, lines] : sections) {
    SCOPED_TRACE(title);
    const StandardStreams restored;
    ASSERT_EQ(chdir("/"), 0);
    device::reset();
    removeItemAtPath(device::documents);
    createDirectoryAtPath(device::documents);
    createProjectsFolder();
    for (std::size_t at = 0; at < lines.size();) {
      const std::string& line = lines[at++];
      std::string expected;
      for (; at < lines.size() && lines[at].starts_with("  "); ++at) expected += lines[at] + '\n';
      std::string came;
      if (line.starts_with("$ ")) {
        const std::string printed = outputOf("cd " + device::projects + " && " + line.substr(2));
        for (const std::string& each : splitLines(printed)) came += each.empty() ? "" : "  | " + each + '\n';
      } else {
        const Tree before = everything();
        if (const std::string said = did(line); !said.empty()) came = "  " + said + '\n';
        const Tree after = everything();
        for (const auto& [name, contents] : before) {
          if (!after.contains(name)) came += "  - " + name + '\n';
        }
        for (const auto& [name, contents] : after) {
          const auto was = before.find(name);
          if (was != before.end() && was->second == contents) continue;
          came += (was == before.end() ? "  + " : "  ~ ") + name;
          came += name.ends_with('/') ? "\n" : ' ' + shown(contents) + '\n';
        }
      }
      ASSERT_EQ(came, expected) << "after: " << line;
    }
  }
}

}  // namespace
