// Projects copied in and out of a device whose programs may mean harm.
#include "device/Process.h"
#include "device/folder/Beneath.h"
#include "device/folder/DeviceFolder.h"
#include "device/transfer/Transfer.h"
#include "support/Cases.h"
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
  expectCases("makefile", [this](const Case& row) {
    putFile(home / "P/Makefile", row[0]);
    const std::string warning = importProject(transfer(), home / "P", Existing::Replaced).warning;
    if (warning.empty()) return std::string("0");
    EXPECT_NE(warning.find(" of its Makefile sets THEOS to "), std::string::npos) << warning;
    return splitAt(warning, " ").at(1);
  });
}

TEST(Phones, AreNamedAsTheosNamesThemAndNeverTakenForOptions) {
  expectCases("phone", [](const Case& row) {
    Phone phone;
    const std::string refusal = refusalOf([&] { phone = phoneFor(row[0], environmentOf(row[1])); });
    return phone.host.empty() ? refusal : phone.user + "@" + phone.host + ":" + phone.port;
  });
}

TEST(Links, LeaveOnlyWhereTheyCannotLeadOut) {
  expectCases("link", [](const Case& row) -> std::string {
    return staysInside(row[0], std::stoi(row[1])) ? "stays" : "leads out";
  });
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
  {
    const Interruption interruption;
    EXPECT_FALSE(Interruption::hasCome());
    raise(SIGTERM);
    EXPECT_THROW(Interruption::check(), Interrupted);
  }
  // Forgets it, so that no other test is interrupted.
  const Interruption another;
  EXPECT_NO_THROW(Interruption::check());
}

}  // namespace
