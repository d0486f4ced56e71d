#include "core/Languages.h"
#include "support/Device.h"
#include "support/StandardStreams.h"
#include "support/Tree.h"
#include "workspace/CurrentProject.h"
#include "workspace/FlexImport.h"
#include "workspace/ProjectFiles.h"
#include "workspace/Projects.h"

#include <cstdio>
#include <set>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

namespace filesystem = std::filesystem;

class Operations : public testing::Test {
 protected:
  Operations() {
    device::reset();
    removeItemAtPath("/var/mobile/Documents/TweakbenchBackups");
    createProjectsFolder();
  }

  static void put(const std::string& path, const std::string& contents) {
    putFile(device::projects + path, contents);
  }
  static std::string at(const std::string& path) { return fileAt(device::projects + path); }

  const StandardStreams restored_;
};

TEST_F(Operations, AHeaderIsMadeAndImportedAtTheTopAsTheShellReadsIt) {
  const std::string longest(253, 'h');
  // What echo and printf read as their own, and more of it than a command line takes.
  std::string large;
  std::string expanded;
  while (large.size() < 5'000'000) {
    large += R"(%s%%\\\n%n$(x)`"')";
    expanded += "%s%%\\\n%n$(x)`\"'";
  }
  const struct {
    std::string typed;
    MaybeText tweak;
    std::string header;
    std::string changed;
  } rows[] = {
      // echo -e expands the backslashes and ends the text with the one line break of its own.
      {"My Header", "%hook A\nsay(\"one\\ntwo\\\\three %d 100%\");\n\n\n", "MyHeader.h",
       "#import MyHeader.h\n%hook A\nsay(\"one\ntwo\\three %d 100%\");\n"},
      {"H", large, "H.h", "#import H.h\n" + expanded + "\n"},
      {"   ", std::nullopt, ".h", "#import .h\n\n"},
      {"-n", "old", "-n.h", "#import -n.h\nold\n"},
      {"ملف", "old", "ملف.h", "#import ملف.h\nold\n"},
      {longest, "old", longest + ".h", "#import " + longest + ".h\nold\n"},
      {"$(pwd)x", "old", "$(pwd)x.h", "#import /x.h\nold\n"},
      // The shell finds no end of the quotes and never comes to writing the file.
      {"a\"b", "old", "a\"b.h", "old"},
      {"it's", "old", "it's.h", "old"},
  };
  ASSERT_EQ(chdir("/"), 0);
  setCurrentProject("P");
  for (const auto& row : rows) {
    removeItemAtPath(device::projects + "P");
    filesystem::create_directories(device::projects + "P");
    if (row.tweak) put("P/Tweak.x", *row.tweak);
    EXPECT_TRUE(createHeader(row.typed)) << row.typed;
    EXPECT_EQ(treeAt(device::projects + "P"), (Tree{{row.header, ""}, {"Tweak.x", row.changed}}))
        << row.typed;
  }
  put("P/it's.h", "typed meanwhile");
  EXPECT_TRUE(createHeader("it's"));
  EXPECT_EQ(at("P/it's.h"), "");
  EXPECT_FALSE(createHeader(std::string(255, 'n'))) << "no file can be called so";
  setCurrentProject(std::nullopt);
  EXPECT_FALSE(createHeader("H"));
}

TEST_F(Operations, RenamingGivesTheListedProjectsFileANameAndMakesItCurrent) {
  put("P/old.x", "old");
  put("P/taken", "taken");
  put("Q/q", "");
  setListedProject("P");
  setCurrentProject("Q");
  const std::vector<std::string> files = listedProjectFiles();
  EXPECT_EQ(std::set<std::string>(files.begin(), files.end()), (std::set<std::string>{"old.x", "taken"}));
  renameFile("old.x", "new name.x");
  EXPECT_EQ(treeAt(device::projects + "P"), (Tree{{"newname.x", "old"}, {"taken", "taken"}}));
  EXPECT_EQ(currentProject(), "P");
  renameFile("newname.x", "taken");
  EXPECT_EQ(treeAt(device::projects + "P"), (Tree{{"taken", "old"}}));
  renameFile("taken", "");
  EXPECT_EQ(treeAt(device::projects + "P"), (Tree{{"taken", "old"}})) << "the project itself is no new name";
  removeItemAtPath(device::application + "Files.plist");
  renameFile("taken", "gone");
  EXPECT_EQ(treeAt(device::projects + "P"), (Tree{{"taken", "old"}}));
  EXPECT_EQ(currentProject(), std::nullopt) << "the two records agree";
}

// Names stand unquoted in the command lines, so what happens is what the shell makes of them, and no more.
TEST_F(Operations, ANastyNameMeansToDeletionAndRenamingWhatTheShellReads) {
  const Tree all{{"two", ""},  {"two words", ""},    {"it's", ""},  {"-rf", ""},     {"ملف.x", ""},
                 {"keep", ""}, {"$(echo keep)", ""}, {"star*", ""}, {"starfish", ""}};
  const struct {
    std::string entry;
    std::vector<std::string> deleted;
    std::string typed;
    MaybeText moved;  // none where the command fails
    std::string made;
  } rows[] = {
      {"two words", {"two"}, "new", {}, ""},
      {"it's", {}, "new", {}, ""},
      {"-rf", {"-rf"}, "new name", "-rf", "newname"},
      {"ملف.x", {"ملف.x"}, "اسم جديد", "ملف.x", "اسمجديد"},
      {"$(echo keep)", {}, "-n", {}, ""},
      {"star*", {"star*", "starfish"}, "new", {}, ""},
      {"keep", {"keep"}, "$(pwd)x", "keep", "x"},
      {"keep", {"keep"}, "it's", {}, ""},
  };
  ASSERT_EQ(chdir("/"), 0);
  setListedProject("P");
  const auto refill = [&all] {
    removeItemAtPath(device::projects + "P");
    for (const auto& [name, contents] : all) put("P/" + name, contents);
  };
  for (const auto& row : rows) {
    refill();
    deleteProjectFile(row.entry);
    Tree left = all;
    for (const std::string& name : row.deleted) left.erase(name);
    EXPECT_EQ(treeAt(device::projects + "P"), left) << row.entry;

    refill();
    renameFile(row.entry, row.typed);
    Tree renamed = all;
    if (row.moved) {
      renamed.erase(*row.moved);
      renamed[row.made];
    }
    EXPECT_EQ(treeAt(device::projects + "P"), renamed) << row.entry << " to " << row.typed;
  }
}

TEST_F(Operations, DeletingTakesTheListedProjectsFileElseTheCurrentOnes) {
  for (const char* file : {"A/x", "A/keep", "B/x", "B/keep"}) put(file, "");
  setListedProject("A");
  setCurrentProject("B");
  deleteProjectFile("x");
  EXPECT_EQ(treeAt(device::projects),
            (Tree{{"A/", ""}, {"A/keep", ""}, {"B/", ""}, {"B/keep", ""}, {"B/x", ""}}));
  putFile(device::application + "Files.plist", device::emptyList());
  deleteProjectFile("x");
  EXPECT_EQ(treeAt(device::projects), (Tree{{"A/", ""}, {"A/keep", ""}, {"B/", ""}, {"B/keep", ""}}));
}

TEST_F(Operations, AProjectOfNoNameUnpacksBesideTheOthersAndCountsAsNoneAfterwards) {
  put("A/x", "");
  put("B/x", "");
  createProject("  ");
  ASSERT_EQ(listedProject(), "");
  EXPECT_TRUE(fileExistsAtPath(device::projects + "Makefile"));
  setListedProject(" ");
  setCurrentProject("B");
  deleteProjectFile("x");
  EXPECT_EQ(at("A/x"), "");
  EXPECT_FALSE(fileExistsAtPath(device::projects + "B/x")) << "as where no project is listed";
}

TEST_F(Operations, ImportTestsThePathAsTypedAndCopiesFromTheRoot) {
  putFile("/var/mobile/Documents/In/Tweak.x", "imported");
  ASSERT_EQ(chdir("/var/mobile"), 0);
  EXPECT_TRUE(importProject("Documents/In")) << "there from here";
  EXPECT_TRUE(treeAt(device::projects).empty()) << "and not from the root";
  setCurrentProject(std::nullopt);
  ASSERT_EQ(chdir("/"), 0);
  EXPECT_FALSE(importProject("var/mobile/Documents/No"));
  EXPECT_FALSE(importProject(""));
  EXPECT_EQ(currentProject(), std::nullopt);
  EXPECT_TRUE(importProject("var/mobile/Documents/In"));
  EXPECT_EQ(currentProject(), "In");
  EXPECT_EQ(listedProject(), "In");
  EXPECT_EQ(treeAt(device::projects), (Tree{{"In/", ""}, {"In/Tweak.x", "imported"}}));
  EXPECT_TRUE(importProject("var/mobile/Documents/In/Tweak.x")) << "a file is copied as well";
  EXPECT_EQ(at("Tweak.x"), "imported");
  removeItemAtPath("/var/mobile/Documents/In");
}

TEST_F(Operations, ABackupIsACopyThatReplacesTheLastOne) {
  EXPECT_EQ(backUpProject(), std::nullopt);
  EXPECT_TRUE(backupNames().empty());
  EXPECT_TRUE(fileExistsAtPath("/var/mobile/Documents/TweakbenchBackups"))
      << "the folder is made before the look";
  put("P/Tweak.x", "first");
  put("P/sub/.hidden", "h");
  chooseProject("P");
  EXPECT_EQ(backUpProject(), "/var/mobile/Documents/TweakbenchBackups/P");
  EXPECT_EQ(at("P/sub/.hidden"), "h") << "the project stays";
  put("P/Tweak.x", "second");
  removeItemAtPath(device::projects + "P/sub");
  backUpProject();
  EXPECT_EQ(treeAt("/var/mobile/Documents/TweakbenchBackups"), (Tree{{"P/", ""}, {"P/Tweak.x", "second"}}));
  put("P/Tweak.x", "third");
  put("P/new", "");
  chooseProject("Q");
  restoreBackup("P");
  chooseProject("P");
  EXPECT_EQ(treeAt(device::projects), (Tree{{"P/", ""}, {"P/Tweak.x", "second"}}));
  EXPECT_EQ(currentProject(), "P");
  EXPECT_EQ(listedProject(), "P");
  putFile("/var/mobile/Documents/TweakbenchBackups/stray", "s");
  restoreBackup("stray");
  EXPECT_EQ(at("stray"), "s");
  deleteAllBackups();
  EXPECT_TRUE(backupNames().empty());
  putFile("/var/mobile/Documents/TweakbenchBackups", "in the way");
  EXPECT_EQ(backUpProject(), "/var/mobile/Documents/TweakbenchBackups/P") << "no command's failure is told";
}

TEST_F(Operations, ARenameThatTheShellRefusesStillNamesTheProject) {
  put("P/control", "Name: P\n");
  put("Taken/file", "");
  chooseProject("P");
  renameProject("Taken");
  EXPECT_EQ(currentProject(), "Taken");
  EXPECT_EQ(at("Taken/P/control"), "Name: P\n") << "mv moves into a folder that is there";
  const Tree before = treeAt(device::projects);
  renameProject("  ");
  EXPECT_EQ(currentProject(), "");
  EXPECT_EQ(treeAt(device::projects), before) << "nothing is called so";
  chooseProject("Taken");
  renameProject("a/b");
  EXPECT_EQ(currentProject(), "a/b");
  EXPECT_TRUE(fileExistsAtPath(device::projects + "Taken/file"));
  setCurrentProject(std::nullopt);
  renameProject("Fresh");
  EXPECT_EQ(currentProject(), "Fresh");
  EXPECT_FALSE(fileExistsAtPath(device::projects + "Fresh"));
}

TEST_F(Operations, ARenameLeavesWhatIsNoTextAloneAndRewritesTheRestHoweverLong) {
  const std::string filler(5'000'000, 'x');
  put("a/control", "Name: a\n\xff");
  put("a/Makefile", "a" + filler + "ba\n");
  chooseProject("a");
  renameProject("long");
  EXPECT_EQ(treeAt(device::projects), (Tree{{"long/", ""},
                                            {"long/Makefile", "long" + filler + "blong\n"},
                                            {"long/control", "Name: a\n\xff"}}));
  removeItemAtPath(device::projects + "long/control");
  removeItemAtPath(device::projects + "long/Makefile");
  renameProject("bare");
  EXPECT_EQ(treeAt(device::projects), (Tree{{"bare/", ""}}));
}

TEST_F(Operations, TheLanguageIsWrittenOrRemoved) {
  setLanguage(Language::Arabic);
  EXPECT_EQ(device::setting("LangFile", "Language"), "AR");
  setLanguage(Language::Automatic);
  EXPECT_EQ(device::setting("LangFile", "Language"), "Auto");
  setLanguage(Language::English);
  EXPECT_EQ(device::setting("LangFile", "Language"), std::nullopt);
  removeItemAtPath(device::application + "LangFile.plist");
  setLanguage(Language::Arabic);
  EXPECT_FALSE(fileExistsAtPath(device::application + "LangFile.plist"));
}

TEST_F(Operations, WhatTheConverterRefusesLandsNowhere) {
  const std::string project = device::projects + "P/";
  const std::string list = "/var/mobile/Library/Flex/patches.plist";
  const std::string menuLog = device::application + "Getter.log";
  installConverter();
  putFile(list, device::emptyList(
                    "<key>patches</key><array><dict><key>name</key><string>One</string></dict></array>"));
  createDirectoryAtPath(project);
  setListedProject("P");
  EXPECT_EQ(run_logged("echo 7 | ftt > /dev/null; echo $?; echo 0 | ftt > /dev/null; echo $?", menuLog),
            "1\n0\n");
  removeItemAtPath("/var/mobile/Documents/Wexley88");
  convertFlexPatch("\033  7 - Gone");
  EXPECT_THROW(convertFlexPatch("ab"), std::out_of_range);
  putFile(list, "damaged");
  EXPECT_EQ(harvestFlexMenu(), std::vector<std::string>{"The list of Flex patches is damaged."});
  convertFlexPatch("\033  1 - 2nd");
  EXPECT_TRUE(contentsOfDirectoryAtPath(project)->empty());
  EXPECT_NE(fileAt(device::application + "titleANDObj.log").find("The list of Flex patches is damaged.\n"),
            std::string::npos);
  // Without a converter the menu has too few lines; the event boundary takes it from there.
  ASSERT_EQ(rename("/usr/bin/ftt", "/usr/bin/ftt-away"), 0);
  EXPECT_THROW(harvestFlexMenu(), std::out_of_range);
  ASSERT_EQ(rename("/usr/bin/ftt-away", "/usr/bin/ftt"), 0);
  removeItemAtPath(list);
}

}  // namespace
