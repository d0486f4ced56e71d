#include "core/Languages.h"
#include "support/Device.h"
#include "support/StandardStreams.h"
#include "support/Tree.h"
#include "workspace/Backups.h"
#include "workspace/CurrentProject.h"
#include "workspace/Deletion.h"
#include "workspace/NewProject.h"
#include "workspace/ProjectFiles.h"
#include "workspace/ProjectName.h"
#include "workspace/ProjectOptions.h"
#include "workspace/Selection.h"
#include "workspace/StartUp.h"

#include <set>

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

TEST_F(Operations, AHeaderIsAddedAndImportedAtTheTop) {
  put("P/Tweak.x", "%hook A\nsay(\"one\\ntwo\\\\three %d 100%\");\n\n\n");
  chooseProject("P");
  EXPECT_TRUE(createHeader("My Header"));
  EXPECT_EQ(at("P/MyHeader.h"), "");
  // echo -e expands the backslashes and ends the text with the one line break of its own.
  EXPECT_EQ(at("P/Tweak.x"), "#import MyHeader.h\n%hook A\nsay(\"one\ntwo\\three %d 100%\");\n");
  put("P/MyHeader.h", "typed meanwhile");
  EXPECT_TRUE(createHeader("MyHeader"));
  EXPECT_EQ(at("P/MyHeader.h"), "");
  EXPECT_EQ(at("P/Tweak.x").substr(0, 45), "#import MyHeader.h\n#import MyHeader.h\n%hook A");
}

TEST_F(Operations, AHeaderNeedsNeitherATweakNorAName) {
  filesystem::create_directories(device::projects + "P");
  chooseProject("P");
  EXPECT_TRUE(createHeader("   "));
  EXPECT_EQ(treeAt(device::projects + "P"), (Tree{{".h", ""}, {"Tweak.x", "#import .h\n\n"}}));
  // Five megabytes of what echo and printf read as their own.
  std::string large;
  std::string expanded = "#import H.h\n";
  while (large.size() < 5'000'000) {
    large += R"(%s%%\\\n%n$(x)`"')";
    expanded += "%s%%\\\n%n$(x)`\"'";
  }
  put("P/Tweak.x", large);
  EXPECT_TRUE(createHeader("H"));
  EXPECT_TRUE(at("P/Tweak.x") == expanded + "\n") << at("P/Tweak.x").substr(0, 100);
  EXPECT_FALSE(createHeader(std::string(255, 'n'))) << "no file can be called so";
  removeCurrentProject();
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
const std::string longest(255, 'n');
const Tree nasty{{"two", ""},   {"two words", ""}, {"it's", ""},    {"-rf", ""},
                 {"ملف.x", ""}, {"keep", ""},      {longest, ""},   {"$(echo keep)", ""},
                 {"star*", ""}, {"starfish", ""},  {"say\"it", ""}, {"a;b", ""}};

Tree nastyWithout(const std::vector<std::string>& names, const std::string& more = "") {
  Tree tree = nasty;
  for (const std::string& name : names) tree.erase(name);
  if (!more.empty()) tree[more];
  return tree;
}

TEST_F(Operations, DeletingANastyNameDeletesWhatTheShellReads) {
  const struct {
    std::string entry;
    std::vector<std::string> deleted;
  } rows[] = {
      {"two words", {"two"}},
      {"it's", {}},
      {"say\"it", {}},
      {"-rf", {"-rf"}},
      {"ملف.x", {"ملف.x"}},
      {longest, {longest}},
      {"$(echo keep)", {"keep"}},
      {"star*", {"star*", "starfish"}},
      {"a;b", {}},
  };
  setListedProject("P");
  for (const auto& row : rows) {
    removeItemAtPath(device::projects + "P");
    for (const auto& [name, contents] : nasty) put("P/" + name, contents);
    deleteProjectFile(row.entry);
    EXPECT_EQ(treeAt(device::projects + "P"), nastyWithout(row.deleted)) << row.entry;
  }
}

TEST_F(Operations, RenamingFromOrToANastyNameRenamesWhatTheShellReads) {
  const struct {
    std::string oldName;
    std::string typed;
    std::string moved;  // none where the command fails
    std::string made;
  } rows[] = {
      {"two words", "new", "", ""},
      {"it's", "new", "", ""},
      {"-rf", "new name", "-rf", "newname"},
      {"ملف.x", "اسم جديد", "ملف.x", "اسمجديد"},
      {longest, "-n", longest, "-n"},
      {"$(echo keep)", "new", "keep", "new"},
      {"keep", "it's", "", ""},
      {"keep", std::string(255, 'm'), "keep", std::string(255, 'm')},
      {"keep", std::string(256, 'm'), "", ""},
      {"keep", "$(pwd)x", "keep", "x"},
  };
  setListedProject("P");
  for (const auto& row : rows) {
    removeItemAtPath(device::projects + "P");
    for (const auto& [name, contents] : nasty) put("P/" + name, contents);
    renameFile(row.oldName, row.typed);
    const Tree expected = row.moved.empty() ? nasty : nastyWithout({row.moved}, row.made);
    EXPECT_EQ(treeAt(device::projects + "P"), expected) << row.oldName << " to " << row.typed;
  }
}

TEST_F(Operations, AHeaderOfANastyNameIsMadeAndImportedAsTheShellReadsIt) {
  const std::string longName(253, 'h');
  const struct {
    std::string typed;
    std::string header;
    std::string tweak;
  } rows[] = {
      {"-n", "-n.h", "#import -n.h\nold\n"},
      {"ملف", "ملف.h", "#import ملف.h\nold\n"},
      {longName, longName + ".h", "#import " + longName + ".h\nold\n"},
      {"$(pwd)x", "$(pwd)x.h", "#import /x.h\nold\n"},
      // The shell finds no end of the quotes and never comes to writing the file.
      {"a\"b", "a\"b.h", "old"},
      {"it's", "it's.h", "old"},
  };
  ASSERT_EQ(chdir("/"), 0);
  setCurrentProject("P");
  for (const auto& row : rows) {
    removeItemAtPath(device::projects + "P");
    put("P/Tweak.x", "old");
    EXPECT_TRUE(createHeader(row.typed)) << row.typed;
    EXPECT_EQ(treeAt(device::projects + "P"), (Tree{{row.header, ""}, {"Tweak.x", row.tweak}})) << row.typed;
  }
}

TEST_F(Operations, AProjectMayVanishWhileItIsRead) {
  put("P/file", "");
  run_cmd("cd /var/Tweakyard/Projects/P && seq -f file%.0f 2000 | xargs touch");
  chooseProject("P");
  run_cmd("rm -rf /var/Tweakyard/Projects/P > /dev/null 2>&1 &");
  do {
    ArraySetUp();
    for (const std::string& name : MUArray()) ASSERT_EQ(name.substr(0, 4), "file");
  } while (fileExistsAtPath(device::projects + "P"));
  ArraySetUp();
  EXPECT_TRUE(MUArray().empty());
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

TEST_F(Operations, AProjectThatIsAbsentOrHasNoNameDeletesNothing) {
  for (const char* file : {"A/x", "B/x"}) put(file, "");
  const Tree before = treeAt(device::projects);
  deleteProjectFile("x");
  deleteListedProject();
  EXPECT_EQ(treeAt(device::projects), before);
  createProject("  ");
  ASSERT_EQ(listedProject(), "");
  const Tree unpacked = treeAt(device::projects);
  deleteProjectFile("A");
  deleteListedProject();
  deleteProject("");
  for (const char* blank : {" ", "\t\n"}) {
    setListedProject(blank);
    deleteListedProject();
    deleteProject(blank);
    setListedProject("A");
    deleteProjectFile(blank);
  }
  EXPECT_EQ(treeAt(device::projects), unpacked);
  EXPECT_EQ(currentProject(), std::nullopt);
  setListedProject(" ");
  setCurrentProject("B");
  deleteProjectFile("x");
  EXPECT_EQ(at("A/x"), "");
  EXPECT_FALSE(fileExistsAtPath(device::projects + "B/x")) << "as where no project is listed";
}

TEST_F(Operations, ProjectsAreDeletedOneOrAll) {
  for (const char* file : {"A/x", "B/x", "C/x", ".hidden/x"}) put(file, "");
  chooseProject("A");
  deleteProject("B");
  EXPECT_EQ(currentProject(), "A");
  EXPECT_FALSE(fileExistsAtPath(device::projects + "B"));
  deleteListedProject();
  EXPECT_EQ(currentProject(), std::nullopt);
  EXPECT_EQ(listedProject(), "A");
  EXPECT_FALSE(fileExistsAtPath(device::projects + "A"));
  chooseProject("C");
  deleteAllProjects();
  EXPECT_EQ(treeAt(device::projects), (Tree{{".hidden/", ""}, {".hidden/x", ""}}));
  EXPECT_EQ(currentProject(), std::nullopt);
}

TEST_F(Operations, AddressesNameTheListedProject) {
  EXPECT_EQ(projectAddress(), "filza://view/var/Tweakyard/Projects/(null)/");
  setListedProject("P");
  EXPECT_EQ(projectAddress(), "filza://view/var/Tweakyard/Projects/P/");
  EXPECT_EQ(packagesAddress(), "filza:///var/mobile/Documents/Tweakbench");
  putFile(device::packages + "/P/x.deb", "");
  EXPECT_EQ(packagesAddress(), "filza:///var/mobile/Documents/Tweakbench/P/");
  deletePackages();
  EXPECT_FALSE(fileExistsAtPath(device::packages));
}

TEST_F(Operations, ImportTestsThePathAsTypedAndCopiesFromTheRoot) {
  ASSERT_EQ(chdir("/"), 0);
  putFile("/var/mobile/Documents/In/Tweak.x", "imported");
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

TEST_F(Operations, ExportCopiesBelowVarAndChangesNothing) {
  put("P/Tweak.x", "x");
  chooseProject("P");
  filesystem::create_directories("/var/mobile/Documents/Out");
  exportProject("mobile/Documents/Out/");
  EXPECT_EQ(treeAt("/var/mobile/Documents/Out"), (Tree{{"P/", ""}, {"P/Tweak.x", "x"}}));
  exportProject("no/such/folder/");
  exportProject("../etc/");
  exportProject("mobile/Documents/Out/P/Tweak.x");
  EXPECT_EQ(treeAt("/var/mobile/Documents/Out"), (Tree{{"P/", ""}, {"P/Tweak.x", "x"}}));
  EXPECT_EQ(treeAt(device::projects), (Tree{{"P/", ""}, {"P/Tweak.x", "x"}}));
  removeItemAtPath("/var/mobile/Documents/Out");
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
  put("P/Tweak.x", "second");
  removeItemAtPath(device::projects + "P/sub");
  backUpProject();
  EXPECT_EQ(treeAt("/var/mobile/Documents/TweakbenchBackups"), (Tree{{"P/", ""}, {"P/Tweak.x", "second"}}));
  put("P/Tweak.x", "third");
  put("P/new", "");
  chooseProject("Q");
  restoreBackup("P");
  chooseRestoredProject("P");
  EXPECT_EQ(treeAt(device::projects), (Tree{{"P/", ""}, {"P/Tweak.x", "second"}}));
  EXPECT_EQ(currentProject(), "P");
  EXPECT_EQ(listedProject(), "P");
  putFile("/var/mobile/Documents/TweakbenchBackups/stray", "s");
  restoreBackup("stray");
  EXPECT_EQ(at("stray"), "s");
  deleteAllBackups();
  EXPECT_TRUE(backupNames().empty());
}

TEST_F(Operations, ABackupThatFindsTheDiskFullLeavesTheProjectAlone) {
  // The backups on a small disk of their own.
  const std::string disk = "/run/mobile/backups";
  filesystem::create_directory(disk);
  filesystem::create_directory_symlink(disk, "/var/mobile/Documents/TweakbenchBackups");
  put("P/small", "s");
  put("P/large", std::string(20 << 20, 'x'));
  chooseProject("P");
  const Tree before = treeAt(device::projects);
  EXPECT_EQ(backUpProject(), "/var/mobile/Documents/TweakbenchBackups/P") << "no command's failure is told";
  EXPECT_LT(sizeOfFile(disk + "/P/large"), 20U << 20) << "the disk is not full";
  EXPECT_EQ(treeAt(device::projects), before);
  EXPECT_EQ(currentProject(), "P");
  filesystem::remove_all(disk);
}

TEST_F(Operations, AProjectOfTwentyThousandFilesIsBackedUpAndRestored) {
  Tree whole{{"P/", ""}};
  for (int i = 0; i < 20'000; ++i) {
    const std::string folder = "P/" + std::to_string(i % 100) + "/";
    const std::string name = folder + std::to_string(i);
    whole[folder];
    put(name, whole[name] = std::to_string(i));
  }
  chooseProject("P");
  backUpProject();
  EXPECT_EQ(treeAt("/var/mobile/Documents/TweakbenchBackups"), whole);
  const Tree lost = treeAt(device::projects + "P/7");
  removeItemAtPath(device::projects + "P/7");
  restoreBackup("P");
  EXPECT_EQ(treeAt(device::projects + "P/7"), lost);
}

TEST_F(Operations, RenamingAProjectFollowsItsNameThroughItsFiles) {
  recordTheosPath();
  createProject("Tweak");
  put("Tweak/Makefile", "TWEAK_NAME = Tweak\nSUBPROJECTS += TweakSettings\nTweak_FILES = Tweak.x\n");
  renameProject("New Pro");
  EXPECT_EQ(currentProject(), "NewPro");
  EXPECT_EQ(listedProject(), "NewPro");
  EXPECT_FALSE(fileExistsAtPath(device::projects + "Tweak"));
  EXPECT_EQ(at("NewPro/Makefile"),
            "TWEAK_NAME = NewPro\nSUBPROJECTS += NewProSettings\nNewPro_FILES = NewPro.x\n");
  EXPECT_NE(at("NewPro/control").find("Name: NewPro\n"), std::string::npos);
  EXPECT_TRUE(fileExistsAtPath(device::projects + "NewPro/NewPro.plist"));
  const Tree before = treeAt(device::projects);
  renameProject("NewPro");
  EXPECT_EQ(treeAt(device::projects), before);
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
  removeCurrentProject();
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

}  // namespace
