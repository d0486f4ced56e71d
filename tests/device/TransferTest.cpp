// Projects copied in and out of a device whose programs may mean harm.
#include "device/Beneath.h"
#include "device/DeviceFolder.h"
#include "device/Interruption.h"
#include "device/Refusal.h"
#include "device/Transfer.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace device {
namespace {

namespace fs = std::filesystem;

// Everything below a folder: its kind and mode, and what it holds or leads to.
std::map<std::string, std::string> treeAt(const std::string& folder) {
  std::map<std::string, std::string> tree;
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
    return {device.path(), openVar(openOrMakeFolder(device.path()).get(), device.path()),
            Rights::own(), Rights::own(),
            022,           std::move(pause)};
  }
  std::string importing(const std::string& path, std::function<void()> pause = {}) {
    return refusalOf([&] { importProject(transfer(std::move(pause)), path); });
  }
  std::string exporting(const std::string& name, const std::string& path, std::function<void()> pause = {}) {
    return refusalOf([&] { exportProject(transfer(std::move(pause)), name, path); });
  }
  template <typename Action>
  static std::string refusalOf(const Action& action) {
    try {
      action();
    } catch (const Refusal& refusal) {
      return refusal.what();
    }
    return "none";
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
  EXPECT_EQ(brought, (std::map<std::string, std::string>{{"Tweak.x", "100644 " + std::string("\0\xff\n", 3)},
                                                         {"script", "100755 #!/bin/sh\n"},
                                                         {"sub", "040755 "},
                                                         {"sub/.hidden", "100644 "},
                                                         {"sub/inside", "120777 ../script"}}));
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
  EXPECT_EQ(treeAt(home / "Built"),
            (std::map<std::string, std::string>{{"Tweak.x", "100644 "},
                                                {"packages", "040755 "},
                                                {"packages/built.deb", "100644 of the application"}}));
  // Made by make alone, and newer or not, the project's own.
  putFile(project("Own/packages/own.deb"), "of make");
  putFile(packages + "/Own/built.deb", "of the application");
  exportProject(transfer(), "Own", home / "Own");
  EXPECT_EQ(treeAt(home / "Own/packages"),
            (std::map<std::string, std::string>{{"own.deb", "100644 of make"}}));
  // What a build plants there keeps no project in.
  putFile(project("Planted/Tweak.x"), "");
  fs::create_directory_symlink(home.path(), packages + "/Planted");
  EXPECT_EQ(exportProject(transfer(), "Planted", home / "Planted").leftOut,
            std::vector<std::string>{"packages"});
  EXPECT_EQ(treeAt(home / "Planted").size(), 1U);
}

TEST_F(TransferTest, APathLeadsWhereItLeadsForEverybodyElse) {
  // Not to what is above the link.
  putFile(home / "far/Away/file", "of Away");
  fs::create_directory(home / "far/Away/sub");
  fs::create_directory_symlink(home / "far/Away/sub", home / "link");
  EXPECT_EQ(importProject(transfer(), home / "link/..").what, "Away");
  EXPECT_EQ(fileAt(project("Away/file")), "of Away");
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
  struct Row {
    const char* target;
    int depth;
    bool stays;
  };
  const std::vector<Row> rows{
      {"file", 0, true},    {"./a//b", 0, true},       {"..", 1, true},           {"../../x/y", 2, true},
      {"", 0, false},       {"/etc/passwd", 3, false}, {"..", 0, false},          {"../..", 1, false},
      {"./../x", 0, false}, {"link/..", 0, false},     {"a/b/../../..", 2, false}};
  for (const auto& row : rows) EXPECT_EQ(staysInside(row.target, row.depth), row.stays) << row.target;

  putFile(project("P/file"), "");
  fs::create_symlink(home / "precious", project("P/absolute"));
  fs::create_symlink("../../../../precious", project("P/above"));
  fs::create_symlink("file", project("P/within"));
  ASSERT_EQ(mkfifo(project("P/pipe").c_str(), 0600), 0);
  auto left = exportProject(transfer(), "P", home / "P").leftOut;
  std::sort(left.begin(), left.end());
  EXPECT_EQ(left, (std::vector<std::string>{"above", "absolute", "pipe"}));
  EXPECT_EQ(treeAt(home / "P"),
            (std::map<std::string, std::string>{{"file", "100644 "}, {"within", "120777 file"}}));
}

TEST_F(TransferTest, WhatCannotComeInLeavesTheDeviceAsItWas) {
  putFile(project("Taken/file"), "mine");
  putFile(home / "Taken/file", "other");
  fs::create_directory(home / "two words");
  fs::create_directory(home / "line\nbreak");
  fs::create_directory(home / "-rf");
  fs::create_directory(home / "\xd9");
  const auto before = treeAt(device.path());
  EXPECT_NE(importing(home / "nothing").find("No such file"), std::string::npos);
  EXPECT_NE(importing(home / "precious").find("Not a directory"), std::string::npos);
  EXPECT_NE(importing("/").find("no project's name"), std::string::npos);
  EXPECT_NE(importing(home / "line\nbreak").find("\"line?break\" is no project's name"), std::string::npos);
  for (const char* name : {"two words", "-rf"})
    EXPECT_NE(importing(home / name).find("command lines"), std::string::npos) << name;
  EXPECT_NE(importing(home / "\xd9").find("UTF-8"), std::string::npos);
  EXPECT_NE(importing(home / "Taken").find("already"), std::string::npos);
  EXPECT_NE(importing(device / "var/Tweakyard/Projects/Taken").find("lies in the device"), std::string::npos);
  EXPECT_NE(importing("/tmp").find("has the device in it"), std::string::npos);
  putFile(home / "P/a", "");
  putFile(home / "P/b", "");
  int steps = 0;
  EXPECT_EQ(importing(home / "P",
                      [&steps] {
                        if (++steps == 2) throw Refusal("enough");
                      }),
            "enough");
  EXPECT_EQ(treeAt(device.path()), before);
}

TEST_F(TransferTest, WhatCannotGoOutLeavesTheHostAsItWas) {
  putFile(project("P/a"), "");
  putFile(project("P/b"), "");
  putFile(home / "there/P/file", "");
  fs::create_symlink("nowhere", home / "dangling");
  const auto before = treeAt(home.path());
  for (const char* name : {"", ".", "..", "P/../P", "../Projects/P", "a\nb"})
    EXPECT_NE(exporting(name, home / "out").find("is no project's name"), std::string::npos) << name;
  EXPECT_NE(exporting("Q", home / "out").find("no project Q"), std::string::npos);
  EXPECT_NE(exporting("P", home / "there").find("already"), std::string::npos);
  EXPECT_NE(exporting("P", home / "precious").find("already"), std::string::npos);
  EXPECT_NE(exporting("P", home / "dangling").find("already"), std::string::npos);
  EXPECT_NE(exporting("P", home / "no/such").find("No such file"), std::string::npos);
  EXPECT_NE(exporting("P", device / "var").find("lies in the device"), std::string::npos);
  EXPECT_EQ(exporting("P", home / "out", [] { throw Refusal("enough"); }), "enough");
  EXPECT_EQ(treeAt(home.path()), before);
}

TEST_F(TransferTest, LinksThatABuildPlantsAreNotFollowed) {
  putFile(home / "P/file", "");
  putFile(project("P/sub/file"), "");
  const auto before = treeAt(home.path());
  fs::create_symlink(home / "P", project("Link"));
  EXPECT_NE(exporting("Link", home / "out").find("cannot be opened"), std::string::npos);

  // A folder is exchanged for a link while the copy is on its way to it.
  putFile(project("Q/sub/file"), "");
  exporting("Q", home / "out", [this] {
    std::error_code ignored;
    fs::remove_all(project("Q/sub"), ignored);
    fs::create_directory_symlink(home.path(), project("Q/sub"), ignored);
  });
  EXPECT_FALSE(fs::exists(home / "out/sub/precious"));
  fs::remove_all(home / "out");

  fs::remove_all(device / "var/Tweakyard");
  fs::create_directory_symlink(home.path(), device / "var/Tweakyard");
  EXPECT_NE(importing(home / "P").find("cannot be opened"), std::string::npos);
  EXPECT_NE(exporting("P", home / "out").find("cannot be opened"), std::string::npos);
  fs::remove(device / "var/Tweakyard");
  fs::create_directory(device / "var/Tweakyard");
  fs::create_directory_symlink(home.path(), device / "var/Tweakyard/Projects");
  EXPECT_NE(importing(home / "P").find("cannot be opened"), std::string::npos);
  EXPECT_EQ(treeAt(home.path()), before);
}

TEST_F(TransferTest, ATreeWithoutEndIsRefused) {
  std::string deep = project("P");
  for (int i = 0; i < 300; ++i) deep += "/d";
  fs::create_directories(deep);
  EXPECT_NE(exporting("P", home / "out").find("too deep"), std::string::npos);
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
}  // namespace device
