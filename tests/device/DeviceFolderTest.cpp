// The device's folder as its own builds may have left it.
#include "core/Text.h"
#include "device/folder/Beneath.h"
#include "device/folder/DeviceFolder.h"
#include "device/folder/HistoryFolder.h"
#include "support/RefusalOf.h"
#include "support/Tree.h"

#include <algorithm>
#include <ctime>
#include <fcntl.h>
#include <map>
#include <set>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// A device, Tweakbench's files, and a folder of the user's that nothing may touch.
class DeviceFolderTest : public testing::Test {
 protected:
  void SetUp() override {
    putFile(home / "precious", "kept");
    ship("Choose.plist", "list 1");
    ship("TheosOrig.zip", "zip 1");
  }
  void ship(const std::string& name, const std::string& content) {
    putFile(files / ("Tweakbench.app/" + name), content);
  }
  void start(const std::optional<std::string>& locale = "ar_SA") {
    DeviceFolder(openOrMakeFolder(device.path()), "the device").complete(files.path(), locale);
  }
  std::string application(const std::string& name) {
    return device / ("Applications/Tweakbench.app/" + name);
  }
  static void replaceByLink(const fs::path& path, const fs::path& target) {
    fs::remove_all(path);
    fs::create_symlink(target, path);
  }
  fs::path setAside() { return fs::directory_iterator(device / "history/set-aside")->path(); }

  TemporaryFolder device;
  TemporaryFolder files;
  TemporaryFolder home;
  const std::string preferences = device / "var/mobile/Library/Preferences/com.apple.springboard.plist";
};

TEST_F(DeviceFolderTest, AStartMakesWhatIsMissingAndKeepsWhatIsThere) {
  const auto startCompletes = [&] {
    start();
    EXPECT_EQ(fileAt(application("TheosOrig.zip")), "zip 1");
    EXPECT_TRUE(fs::is_directory(device / "var/mobile/Documents"));
    for (const auto& [link, target] :
         std::map<std::string, std::string>{{"usr-bin/env", "/.host/usr/bin/env"},
                                            {"bin/env", "/.host/usr/bin/env"},
                                            {"bin/sh", "/.host/tweakbench/guard"}})
      EXPECT_EQ(fs::read_symlink(device / link), target) << link;
  };
  startCompletes();
  EXPECT_EQ(fileAt(application("Choose.plist")), "list 1");
  EXPECT_FALSE(fs::exists(device / "var/Tweakyard"));
  const std::vector<std::string> kept{device / "var/Tweakyard/Projects/P/Tweak.x",
                                      application("Choose.plist"), device / "usr-bin/ftt", preferences};
  for (const std::string& file : kept) putFile(file, "mine");
  // As a start that was killed, or a build, leaves it.
  for (const char* missing :
       {"Applications/Tweakbench.app/TheosOrig.zip", "shipped", "bin", "usr-bin/env", "var/mobile/Documents"})
    fs::remove_all(device / missing);
  startCompletes();
  for (const std::string& file : kept) EXPECT_EQ(fileAt(file), "mine");
}

TEST_F(DeviceFolderTest, ItsLocaleIsTheLastCallersUntilSomebodyElseSetsIt) {
  start(std::nullopt);
  EXPECT_FALSE(fs::exists(preferences)) << "no start of the application";
  start("en_US");
  start("ar_SA");
  start(std::nullopt);
  const std::string text = fileAt(preferences);
  const auto with = [&](const char* locale, const char* other = "") {
    return replaceAll(replaceAll(text, "ar_SA", locale), "</dict>", std::string(other) + "</dict>");
  };
  const char* const other = "<key>SBOther</key><string>ar_SA</string>";
  const std::pair<std::string, std::string> rows[] = {
      {with("ar_SA", other), with("de_DE", other)},
      {with("fr_FR"), with("fr_FR")},
      {"", ""},
      {"<key>XBRecentLocale</key>", "<key>XBRecentLocale</key>"},
      {"<key>XBRecentLocale</key> <string>de_DE", "<key>XBRecentLocale</key> <string>de_DE"},
  };
  for (const auto& [before, after] : rows) {
    putFile(preferences, before);
    start("de_DE");
    EXPECT_EQ(fileAt(preferences), after);
  }
}

TEST_F(DeviceFolderTest, WhatIsLeftOfADeviceThatWasDeletedWhileItWasUsedIsOneStill) {
  DeviceFolder used(openOrMakeFolder(device.path()), "the device");
  used.complete(files.path(), "ar_SA");
  fs::remove_all(device / "Applications");
  fs::remove(device / "lock");
  EXPECT_NE(refusalOf([&] { start(); }), "none");
  used.remainDevice();
  start();
  EXPECT_EQ(fileAt(application("Choose.plist")), "list 1");
  for (const auto& entry : fs::directory_iterator(device.path())) fs::remove_all(entry);
  used.remainDevice();
  EXPECT_TRUE(fs::is_empty(device.path())) << "where nothing is left, nothing is made";
}

TEST_F(DeviceFolderTest, WhatAKilledSaveLeftGoesAtTheNextStart) {
  start();
  const std::string project = device / "var/Tweakyard/Projects/P/";
  const std::vector<std::string> left{application(".tweakbench-saving-Ab3dEf"),
                                      project + ".tweakbench-saving-zyxwvu"};
  const std::vector<std::string> kept{
      application(".tweakbench-saving-Ab3d.f"), project + ".tweakbench-config",
      project + ".tweakbench-saving-folder/file", project + "deep/.tweakbench-saving-zyxwvu",
      home / ".tweakbench-saving-zyxwvu"};
  for (const auto* files : {&left, &kept})
    for (const std::string& file : *files) putFile(file, "mine");
  fs::create_symlink(home.path(), device / "var/Tweakyard/Projects/link");
  start();
  for (const std::string& file : left) EXPECT_FALSE(fs::exists(file)) << file;
  for (const std::string& file : kept) EXPECT_EQ(fileAt(file), "mine") << file;
}

TEST_F(DeviceFolderTest, ANewReleaseRenewsOnlyWhatWasLeftAsShipped) {
  ship("ftt", "converter 1");
  start();
  putFile(application("Choose.plist"), "chosen");
  fs::remove(application("ftt"));
  for (const char* name : {"Choose.plist", "TheosOrig.zip", "ftt", "New.plist"}) ship(name, "release 2");
  start();
  EXPECT_EQ(fileAt(application("Choose.plist")), "chosen");
  EXPECT_EQ(fileAt(application("TheosOrig.zip")), "release 2");
  EXPECT_EQ(fileAt(application("New.plist")), "release 2");
  EXPECT_FALSE(fs::exists(application("ftt")));
  fs::remove_all(device / "Applications/Tweakbench.app");
  start();
  EXPECT_EQ(fileAt(application("Choose.plist")), "release 2");
}

TEST_F(DeviceFolderTest, TheConverterIsRenewedWhereTheApplicationMovedIt) {
  const std::string moved = device / "usr-bin/ftt";
  const auto release = [&](const std::string& converter) {
    ship("ftt", converter);
    fs::permissions(files / "Tweakbench.app/ftt", fs::perms(0755));
    start();
  };
  release("converter 1");
  EXPECT_FALSE(fs::exists(moved)) << "moving it is the application's part";
  fs::rename(application("ftt"), moved);
  for (const char* later : {"converter 2", "converter 3"}) {
    release(later);
    EXPECT_EQ(fileAt(moved), later);
    EXPECT_EQ(fs::status(moved).permissions(), fs::perms(0755));
    EXPECT_FALSE(fs::exists(application("ftt")));
  }
  putFile(moved, "mine");
  release("converter 4");
  EXPECT_EQ(fileAt(moved), "mine");
  replaceByLink(moved, home / "precious");
  putFile(home / "precious", "converter 4");
  release("converter 5");
  EXPECT_EQ(fileAt(home / "precious"), "converter 4");
  EXPECT_TRUE(fs::is_symlink(moved));
  fs::remove(moved);
  release("converter 6");
  EXPECT_FALSE(fs::exists(fs::symlink_status(moved))) << "what was removed stays away";
}

TEST_F(DeviceFolderTest, ProgramsThatABuildReplacedArePutRight) {
  start();
  fs::remove(device / "usr-bin/make");
  putFile(device / "usr-bin/make", "mine");
  fs::remove(device / "usr-bin/env");
  putFile(device / "usr-bin/env/inside", "kept");
  fs::create_symlink("/.host/usr/bin/gone", device / "usr-bin/gone");
  start();
  for (const std::string program : {"make", "env"})
    EXPECT_EQ(fs::read_symlink(device / ("usr-bin/" + program)), "/.host/usr/bin/" + program);
  EXPECT_EQ(fileAt(setAside() / "usr-bin/env/inside"), "kept");
  EXPECT_FALSE(fs::is_symlink(device / "usr-bin/gone"));
}

TEST_F(DeviceFolderTest, WhatAKilledImportLeftIsSetAsideAndALivingOneIsNot) {
  start();
  putFile(device / "var/Tweakyard/.import-1/file", "kept");
  putFile(device / "var/Tweakyard/.import-2/file", "copying");
  // A build can make any number of them, and an entry for each would take the next start hours.
  putFile(device / "var/Tweakyard/.import-3/file", "kept too");
  const Descriptor living(
      open((device / "var/Tweakyard/.import-2").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  ASSERT_EQ(flock(living.get(), LOCK_EX | LOCK_NB), 0);
  start();
  EXPECT_FALSE(fs::exists(device / "var/Tweakyard/.import-1"));
  EXPECT_TRUE(fs::exists(device / "var/Tweakyard/.import-2/file"));
  EXPECT_EQ(fileAt(setAside() / "var/Tweakyard/.import-1/file"), "kept");
  EXPECT_EQ(fileAt(setAside() / "var/Tweakyard/.import-3/file"), "kept too");
}

TEST_F(DeviceFolderTest, FoldersThatAreNoDeviceAreRefused) {
  const auto expectNoStart = [&](const std::string& path, const std::string& reason) {
    expectRefusal([&] { DeviceFolder(openOrMakeFolder(path), path); }, reason);
  };
  expectNoStart(home.path(), "holds other files");
  expectNoStart(home / "precious", "could not be opened");
  EXPECT_EQ(std::distance(fs::directory_iterator(home.path()), {}), 1);
  start();
  replaceByLink(device / "bin", home.path());
  expectNoStart(device.path(), "damaged: bin");
}

TEST_F(DeviceFolderTest, OnlyAStartThatIsAlonePutsTheFolderInOrder) {
  const fs::path link = device / "usr-bin/env";
  {
    DeviceFolder first(openOrMakeFolder(device.path()), "the device");
    first.complete(files.path(), "en_US");
    EXPECT_TRUE(first.isAlone());
    first.share();
    fs::remove(link);
    DeviceFolder second(openOrMakeFolder(device.path()), "the device");
    second.complete(files.path(), "en_US");
    EXPECT_FALSE(second.isAlone() || fs::is_symlink(link)) << "what runs may be using the folder";
  }
  start();
  EXPECT_TRUE(fs::is_symlink(link));
}

TEST(Beneath, NothingAboveOrThroughALinkIsReached) {
  const TemporaryFolder folder;
  const TemporaryFolder outside;
  putFile(outside / "secret", "secret");
  putFile(folder / "inner/file", "own");
  fs::create_directory_symlink(outside.path(), folder / "link");
  fs::create_directory_symlink("inner", folder / "within");
  const Descriptor opened(open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  EXPECT_EQ(readBeneath(opened.get(), "inner/file", 10), "own");
  EXPECT_FALSE(readBeneath(opened.get(), "inner/file", 2));
  const std::string above = "../" + fs::path(outside.path()).filename().string() + "/secret";
  for (const std::string& path :
       {std::string("link/secret"), std::string("within/file"), above, outside / "secret"}) {
    EXPECT_FALSE(readBeneath(opened.get(), path, 10)) << path;
  }
  EXPECT_FALSE(makeFolderBeneath(opened.get(), "link/made"));
  EXPECT_FALSE(fs::exists(outside / "made"));
  EXPECT_TRUE(makeFolderBeneath(opened.get(), "inner/a/b"));
}

// One copy each ten minutes for 40 days, of which the newest days have only incomplete ones.
TEST(HistoryThinning, KeepsTheLastHourThenOneAnHourThenOneADayAndTheNewestWholeOnes) {
  constexpr std::time_t now = 1'800'000'000;
  const auto nameAt = [](std::time_t time) {
    char name[32];
    std::strftime(name, sizeof name, "%Y-%m-%dT%H-%M-%SZ", std::gmtime(&time));
    return std::string(name);
  };
  std::vector<HistoryEntry> copies;
  for (int age = 0; age < 40 * 144; ++age)
    copies.push_back({nameAt(now - age * 600L), false, age >= 3 * 144, {}});
  const auto thinned = thinnedOut(copies, now);
  const std::set<std::string> gone(thinned.begin(), thinned.end());
  const auto keptWithin = [&](std::time_t from, std::time_t to) {
    return std::count_if(copies.begin(), copies.end(), [&](const HistoryEntry& copy) {
      const std::time_t age = now - timeOf(copy.when);
      return age > from && age <= to && !gone.contains(copy.when);
    });
  };
  EXPECT_EQ(keptWithin(-1, 3600), 7);
  EXPECT_NEAR(keptWithin(3600, 86400), 24, 1);
  EXPECT_NEAR(keptWithin(86400, 31 * 86400L), 33, 1);
  EXPECT_EQ(keptWithin(31 * 86400L, 41 * 86400L), 0);
  EXPECT_FALSE(gone.contains(copies[3 * 144].when)) << "the newest whole copy";
  // A clock that was wrong for one start does not empty the history.
  const auto later = thinnedOut(copies, now + 20L * 365 * 86400);
  EXPECT_EQ(copies.size() - later.size(), 4U);
  // Where space is short, a flood of new copies goes before the old ones.
  EXPECT_TRUE(thinnedOut(copies, now - 20L * 365 * 86400).empty());
  EXPECT_EQ(leastMissed({copies[0], copies[1], copies[500], copies[5000]}), copies[1].when);
}

}  // namespace
