// Projects copied in and out of a device whose programs may mean harm.
#include "device/Process.h"
#include "device/folder/Beneath.h"
#include "device/folder/DeviceFolder.h"
#include "device/transfer/Send.h"
#include "device/transfer/Transfer.h"
#include "support/RefusalOf.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// Everything below a folder: its kind and mode, and what it holds or leads to.
using Tree = std::map<std::string, std::string>;

Tree treeAt(const std::string& folder) {
  Tree tree;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    struct stat status {};
    lstat(entry.path().c_str(), &status);
    char kind[16];
    snprintf(kind, sizeof kind, "%06o ", status.st_mode);
    std::string content;
    if (entry.is_symlink()) {
      content = fs::read_symlink(entry.path());
    } else if (entry.is_regular_file()) {
      content = fileAt(entry.path());
    }
    tree[entry.path().lexically_relative(folder)] = kind + content;
  }
  return tree;
}

class TransferTest : public testing::Test {
 protected:
  TransferTest() {
    putFile(home / "precious", "kept");
    putFile(device / "lock", "");
    fs::permissions(device / "lock", fs::perms::owner_read | fs::perms::owner_write);
  }

  Transfer transfer(std::function<void()> pause = {}) {
    Descriptor folder = openOrMakeFolder(device.path());
    Descriptor var = openVar(folder.get(), device.path());
    return {device.path(), std::move(folder), std::move(var), Rights::own(), Rights::own(),
            022,           std::move(pause)};
  }
  void expectNoImport(const std::string& path, const std::string& reason, std::function<void()> pause = {}) {
    expectRefusal([&] { importProject(transfer(std::move(pause)), path); }, reason);
  }
  void expectNoExport(const std::string& name, const std::string& path, const std::string& reason,
                      std::function<void()> pause = {}) {
    expectRefusal([&] { exportProject(transfer(std::move(pause)), name, path); }, reason);
  }
  std::string project(const std::string& path) { return device / ("var/Tweakyard/Projects/" + path); }

  TemporaryFolder device;
  TemporaryFolder home;
};

TEST_F(TransferTest, AProjectComesInAndGoesOutAsItWas) {
  putFile(home / "P/Tweak.x", std::string("\0\xff\n", 3));
  putFile(home / "P/sub/.hidden", "");
  putFile(home / "P/script", "#!/bin/sh\n");
  ASSERT_EQ(chmod((home / "P/script").c_str(), 04750), 0);
  ASSERT_EQ(chmod((home / "P/Tweak.x").c_str(), 0600), 0);
  fs::create_symlink("../script", home / "P/sub/inside");
  fs::last_write_time(home / "P/script", fs::file_time_type::clock::now() - std::chrono::hours(1000));
  EXPECT_EQ(importProject(transfer(), (home / "P/")).what, "P");
  const auto brought = treeAt(project("P"));
  EXPECT_EQ(brought, (Tree{{"Tweak.x", "100644 " + std::string("\0\xff\n", 3)},
                           {"script", "100755 #!/bin/sh\n"},
                           {"sub", "040755 "},
                           {"sub/.hidden", "100644 "},
                           {"sub/inside", "120777 ../script"}}));
  EXPECT_EQ(fs::status(project("P")).permissions(), fs::perms(0755));
  fs::create_directory(home / "out");
  EXPECT_EQ(exportProject(transfer(), "P", home / "out").what, home / "out/P");
  EXPECT_EQ(treeAt(home / "out/P"), brought);
  EXPECT_EQ(fs::last_write_time(home / "out/P/script"), fs::last_write_time(home / "P/script"));
  EXPECT_EQ(exportProject(transfer(), "P", home / "copy/").what, home / "copy");
  EXPECT_EQ(treeAt(home / "copy"), brought);
}

TEST_F(TransferTest, ItsPackagesGoOutWithAProject) {
  const std::string packages = device / "var/mobile/Documents/Tweakbench";
  putFile(project("Built/Tweak.x"), "");
  putFile(packages + "/Built/built.deb", "of the application");
  fs::create_symlink(home / "precious", packages + "/Built/link");
  EXPECT_EQ(exportProject(transfer(), "Built", home / "Built").leftOut,
            std::vector<std::string>{"packages/link"});
  EXPECT_EQ(treeAt(home / "Built"), (Tree{{"Tweak.x", "100644 "},
                                          {"packages", "040755 "},
                                          {"packages/built.deb", "100644 of the application"}}));
  // Made by make alone, and newer or not, the project's own.
  putFile(project("Own/packages/own.deb"), "of make");
  putFile(packages + "/Own/built.deb", "of the application");
  exportProject(transfer(), "Own", home / "Own");
  EXPECT_EQ(treeAt(home / "Own/packages"), (Tree{{"own.deb", "100644 of make"}}));
  // What a build plants there keeps no project in.
  putFile(project("Planted/Tweak.x"), "");
  fs::create_directory_symlink(home.path(), packages + "/Planted");
  EXPECT_EQ(exportProject(transfer(), "Planted", home / "Planted").leftOut,
            std::vector<std::string>{"packages"});
  EXPECT_EQ(treeAt(home / "Planted").size(), 1U);
}

TEST_F(TransferTest, PackagesComeInToWhereTheyGoOutFrom) {
  const std::string packages = device / "var/mobile/Documents/Tweakbench/P";
  putFile(home / "P/Tweak.x", "");
  putFile(home / "P/packages/old.deb", "of the host");
  putFile(home / "P/packages/taken.deb", "of the host");
  putFile(packages + "/taken.deb", "of the device");
  EXPECT_EQ(importProject(transfer(), home / "P").leftOut, std::vector<std::string>{"packages/taken.deb"});
  EXPECT_EQ(treeAt(project("P")).size(), 1U);
  EXPECT_EQ(treeAt(packages),
            (Tree{{"old.deb", "100644 of the host"}, {"taken.deb", "100644 of the device"}}));
  // A link that a build left there is not followed.
  putFile(home / "Q/packages/old.deb", "");
  fs::create_directory_symlink(home / "P", device / "var/mobile/Documents/Tweakbench/Q");
  EXPECT_EQ(importProject(transfer(), home / "Q").leftOut, std::vector<std::string>{"packages/old.deb"});
  EXPECT_TRUE(treeAt(project("Q")).empty());
  EXPECT_FALSE(fs::exists(home / "P/old.deb"));
}

TEST_F(TransferTest, AReplacedProjectIsKeptWhole) {
  const auto again = [this] { return importProject(transfer(), home / "P", Existing::Replaced); };
  putFile(home / "P/new", "1");
  EXPECT_EQ(again().kept, "") << "there was none";
  putFile(project("P/old"), "of the device");
  fs::create_symlink("/etc/passwd", project("P/link"));
  ASSERT_EQ(chmod(project("P/old").c_str(), 0), 0);
  const auto before = treeAt(project("P"));
  putFile(device / "var/mobile/Documents/Tweakbench/P/built.deb", "");
  const fs::path kept = again().kept;
  EXPECT_EQ(kept.parent_path(), device / "history/set-aside");
  EXPECT_EQ(treeAt(kept), (Tree{{"Projects", fs::is_directory(kept / "Projects") ? "040755 " : ""},
                                {"Projects/P", "040755 "},
                                {"Projects/P/link", before.at("link")},
                                {"Projects/P/new", before.at("new")},
                                {"Projects/P/old", before.at("old")},
                                {"moved", "100600 "}}));
  EXPECT_EQ(treeAt(project("P")), (Tree{{"new", "100644 1"}}));
  EXPECT_TRUE(fs::exists(device / "var/mobile/Documents/Tweakbench/P/built.deb")) << "none came in its place";

  putFile(home / "P/packages/in.deb", "");
  const fs::path second = again().kept;
  EXPECT_NE(second, kept) << "in the same second";
  EXPECT_EQ(treeAt(device / "var/mobile/Documents/Tweakbench/P"), (Tree{{"in.deb", "100644 "}}));
  EXPECT_TRUE(fs::exists(second / "Tweakbench/P/built.deb"));
  EXPECT_EQ(treeAt(device / "var/Tweakyard").size(), 3U) << "nothing is left of the copy";
  expectNoImport(home / "P", "import --replace replaces it");
}

TEST_F(TransferTest, AMakefileThatFixesTheosElsewhereIsToldOf) {
  putFile(device / "var/theos/makefiles/common.mk", "");
  const std::pair<const char*, int> rows[] = {
      {"THEOS = /home/me/theos\n", 1},
      {"# mine\nexport THEOS=/home/me/theos # here\ninclude $(THEOS)/makefiles/common.mk\n", 2},
      {"override export THEOS := ~/theos", 1},
      {"THEOS ::= $(HOME)/theos/\n", 1},
      {"THEOS = /opt/theos\nTHEOS=/private/var/none\n", 2},
      {"THEOS = /opt/theos/\n", 0},
      {"THEOS=/home/me/theos\nTHEOS = /var/theos\n", 0},
      {"export THEOS = /private/var/theos\r\n", 0},
      {"THEOS ?= /home/me/theos\n", 0},
      {"ifndef THEOS\n  export THEOS = /home/me/theos\nendif\n", 0},
      {"ifeq ($(THEOS),)\nifdef X\nendif\nTHEOS = /home/me/theos\nelse\nendif\n", 0},
      {"THEOS = $(shell pwd)/theos\nTHEOS_DEVICE_IP = /x\nTHEOSX=/y\nall:\n\tTHEOS=/z true\n", 0},
      {"THEOS = theos", 0},
  };
  for (const auto& [makefile, line] : rows) {
    putFile(home / "P/Makefile", makefile);
    const std::string warning = importProject(transfer(), home / "P", Existing::Replaced).warning;
    EXPECT_EQ(warning.starts_with("Line " + std::to_string(line) + " of its Makefile sets THEOS to "),
              line > 0)
        << makefile << warning;
  }
}

TEST(Phones, AreNamedAsTheosNamesThemAndNeverTakenForOptions) {
  const Environment theos{
      {"THEOS_DEVICE_IP", "10.0.0.2"}, {"THEOS_DEVICE_PORT", "2222"}, {"THEOS_DEVICE_USER", "mobile"}};
  const auto phone = [](const std::string& typed, const Environment& caller) {
    const Phone found = phoneFor(typed, caller);
    return found.user + " " + found.host + " " + found.port;
  };
  EXPECT_EQ(phone("", theos), "mobile 10.0.0.2 2222");
  EXPECT_EQ(phone("phone.local", {}), "root phone.local ");
  EXPECT_EQ(phone("me@[fe80::1%eth0]", theos), "me fe80::1%eth0 2222");
  for (const char* typed :
       {"-oProxyCommand=x", "phone:22", "me@-x", "-l@phone", "@phone", "me@", "a b", "me@a;b", "$(x)@phone"})
    expectRefusal([typed] { phoneFor(typed, {}); }, "is not the name of a");
  expectRefusal([] { phoneFor("", {}); }, "Which phone");
  expectRefusal([] { phoneFor("phone", {{"THEOS_DEVICE_PORT", "22 -x"}}); }, "not a port");
}

TEST_F(TransferTest, APathLeadsWhereItLeadsForEverybodyElse) {
  // Not to what is above the link.
  putFile(home / "far/Away/file", "of Away");
  fs::create_directory(home / "far/Away/sub");
  fs::create_symlink("/etc/passwd", home / "far/Away/out");
  fs::create_directory_symlink(home / "far/Away/sub", home / "link");
  EXPECT_EQ(importProject(transfer(), home / "link/..").what, "Away");
  EXPECT_EQ(fileAt(project("Away/file")), "of Away");
  EXPECT_TRUE(fs::is_symlink(project("Away/out"))) << "wherever it leads, in it comes";
  EXPECT_EQ(importProject(transfer(), home / "far/Away/sub/./").what, "sub");
  EXPECT_EQ(importProject(transfer(), home / "link/").what, "link") << "its name as it was typed";
  EXPECT_EQ(exportProject(transfer(), "Away", home / "link/../copy").what, home / "far/Away/copy");
  EXPECT_EQ(fileAt(home / "far/Away/copy/file"), "of Away");
}

TEST_F(TransferTest, AHugeHoleCostsNothing) {
  fs::create_directories(project("P"));
  putFile(project("P/holes"), "start");
  ASSERT_EQ(truncate(project("P/holes").c_str(), 1LL << 40), 0);
  exportProject(transfer(), "P", home / "P");
  struct stat status {};
  ASSERT_EQ(stat((home / "P/holes").c_str(), &status), 0);
  EXPECT_EQ(status.st_size, 1LL << 40);
  EXPECT_LT(status.st_blocks, 1000);
}

TEST_F(TransferTest, ALinkLeavesOnlyWhereItCannotLeadOut) {
  using Links = std::vector<std::pair<const char*, int>>;  // with the depth of the folder that they lie in
  for (const auto& [target, depth] : Links{{"file", 0}, {"./a//b", 0}, {"..", 1}, {"../../x/y", 2}})
    EXPECT_TRUE(staysInside(target, depth)) << target;
  for (const auto& [target, depth] : Links{{"", 0},
                                           {"/etc/passwd", 3},
                                           {"..", 0},
                                           {"../..", 1},
                                           {"./../x", 0},
                                           {"link/..", 0},
                                           {"a/b/../../..", 2}})
    EXPECT_FALSE(staysInside(target, depth)) << target;

  putFile(project("P/file"), "");
  fs::create_symlink(home / "precious", project("P/absolute"));
  fs::create_symlink("../../../../precious", project("P/above"));
  fs::create_symlink("file", project("P/within"));
  ASSERT_EQ(mkfifo(project("P/pipe").c_str(), 0600), 0);
  auto left = exportProject(transfer(), "P", home / "P").leftOut;
  std::sort(left.begin(), left.end());
  EXPECT_EQ(left, (std::vector<std::string>{"above", "absolute", "pipe"}));
  EXPECT_EQ(treeAt(home / "P"), (Tree{{"file", "100644 "}, {"within", "120777 file"}}));
}

TEST_F(TransferTest, WhatCannotComeInLeavesTheDeviceAsItWas) {
  putFile(project("Taken/file"), "mine");
  putFile(home / "Taken/file", "other");
  fs::create_directory(home / "two words");
  fs::create_directory(home / "line\nbreak");
  fs::create_directory(home / "-rf");
  fs::create_directory(home / "\xd9");
  const auto before = treeAt(device.path());
  expectNoImport(home / "nothing", "No such file");
  expectNoImport(home / "precious", "Not a directory");
  expectNoImport("/", "not a project's name");
  expectNoImport(home / "line\nbreak", "\"line?break\" is not a project's name");
  for (const char* name : {"two words", "-rf"}) expectNoImport(home / name, "command lines");
  expectNoImport(home / "\xd9", "UTF-8");
  expectNoImport(home / "Taken", "already");
  expectNoImport(device / "var/Tweakyard/Projects/Taken", "is in the device");
  expectNoImport("/tmp", "contains the device");
  putFile(home / "P/a", "");
  putFile(home / "P/b", "");
  int steps = 0;
  expectNoImport(home / "P", "enough", [&steps] {
    if (++steps == 2) throw Refusal("enough");
  });
  EXPECT_EQ(treeAt(device.path()), before);
}

TEST_F(TransferTest, WhatCannotGoOutLeavesTheHostAsItWas) {
  putFile(project("P/a"), "");
  putFile(project("P/b"), "");
  putFile(home / "there/P/file", "");
  fs::create_symlink("nowhere", home / "dangling");
  const auto before = treeAt(home.path());
  for (const char* name : {"", ".", "..", "P/../P", "../Projects/P", "a\nb"})
    expectNoExport(name, home / "out", "is not a project's name");
  expectNoExport("Q", home / "out", "no project Q");
  expectNoExport("P", home / "there", "already");
  expectNoExport("P", home / "precious", "already");
  expectNoExport("P", home / "dangling", "already");
  expectNoExport("P", home / "no/such", "No such file");
  expectNoExport("P", device / "var", "is in the device");
  expectNoExport("P", home / "out", "enough", [] { throw Refusal("enough"); });
  EXPECT_EQ(treeAt(home.path()), before);
}

TEST_F(TransferTest, LinksThatABuildPlantsAreNotFollowed) {
  putFile(home / "P/file", "");
  putFile(project("P/sub/file"), "");
  const auto before = treeAt(home.path());
  fs::create_symlink(home / "P", project("Link"));
  expectNoExport("Link", home / "out", "cannot be opened");

  // A folder is exchanged for a link while the copy is on its way to it.
  putFile(project("Q/sub/file"), "");
  refusalOf([this] {
    const auto exchange = [this] {
      std::error_code ignored;
      fs::remove_all(project("Q/sub"), ignored);
      fs::create_directory_symlink(home.path(), project("Q/sub"), ignored);
    };
    exportProject(transfer(exchange), "Q", home / "out");
  });
  EXPECT_FALSE(fs::exists(home / "out/sub/precious"));
  fs::remove_all(home / "out");

  fs::remove_all(device / "var/Tweakyard");
  fs::create_directory_symlink(home.path(), device / "var/Tweakyard");
  expectNoImport(home / "P", "cannot be opened");
  expectNoExport("P", home / "out", "cannot be opened");
  fs::remove(device / "var/Tweakyard");
  fs::create_directory(device / "var/Tweakyard");
  fs::create_directory_symlink(home.path(), device / "var/Tweakyard/Projects");
  expectNoImport(home / "P", "cannot be opened");
  EXPECT_EQ(treeAt(home.path()), before);
}

TEST_F(TransferTest, ATreeWithoutEndIsRefused) {
  std::string deep = project("P");
  for (int i = 0; i < 300; ++i) deep += "/d";
  fs::create_directories(deep);
  expectNoExport("P", home / "out", "too deep");
  EXPECT_FALSE(fs::exists(home / "out"));
}

TEST(Interruption, ASignalIsNotedUntilItIsAskedFor) {
  const Interruption interruption;
  Interruption::check();
  raise(SIGTERM);
  try {
    Interruption::check();
    ADD_FAILURE() << "the signal is lost";
  } catch (const Interrupted& interrupted) {
    EXPECT_EQ(interrupted.signal, SIGTERM);
  }
}

}  // namespace
