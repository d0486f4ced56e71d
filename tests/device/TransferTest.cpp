// Projects copied in and out of a device whose programs may mean harm.
#include "device/Process.h"
#include "device/folder/Beneath.h"
#include "device/folder/DeviceFolder.h"
#include "device/transfer/Send.h"
#include "device/transfer/Transfer.h"
#include "support/RefusalOf.h"
#include "support/Tree.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

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

TEST(Links, LeaveOnlyWhereTheyCannotLeadOut) {
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
}

TEST_F(TransferTest, WhatIsInterruptedLeavesNothingBehind) {
  for (const char* file : {"a", "b"}) putFile(home / "P/" + file, ""), putFile(project("Q/") + file, "");
  const Tree before[] = {treeAt(device.path()), treeAt(home.path())};
  int steps = 0;
  const auto stopAtSecond = [&steps] {
    if (++steps % 2 == 0) throw Refusal("enough");
  };
  expectNoImport(home / "P", "enough", stopAtSecond);
  expectNoExport("Q", home / "out", "enough", stopAtSecond);
  EXPECT_EQ(treeAt(device.path()), before[0]);
  EXPECT_EQ(treeAt(home.path()), before[1]);
}

TEST_F(TransferTest, AFolderThatBecomesALinkDuringTheCopyIsNotFollowed) {
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
