// What each operation changes, and nothing else: steps.txt, line by line. The grammar stands at the head of
// that file.
#include "support/Operations.h"
#include "support/Sections.h"
#include "support/Shell.h"
#include "support/StandardStreams.h"
#include "support/Tree.h"

#include <gtest/gtest.h>

namespace {

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
        if (const std::string said = perform(line); !said.empty()) came = "  " + said + '\n';
        const Tree after = everything();
        for (const auto& [name, contents] : before) {
          if (!after.contains(name)) came += "  - " + name + '\n';
        }
        for (const auto& [name, contents] : after) {
          const auto was = before.find(name);
          if (was != before.end() && was->second == contents) continue;
          came += (was == before.end() ? "  + " : "  ~ ") + name;
          came += name.ends_with('/') ? "\n" : ' ' + shownText(contents) + '\n';
        }
      }
      ASSERT_EQ(came, expected) << "after: " << line;
    }
  }
}

}  // namespace
