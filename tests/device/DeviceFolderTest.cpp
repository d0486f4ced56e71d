// The device's folder as its own builds may have left it.
#include "core/Text.h"
#include "device/folder/Beneath.h"
#include "device/folder/DeviceFolder.h"
#include "device/folder/HistoryFolder.h"
#include "support/Cases.h"
#include "support/RefusalOf.h"
#include "support/Sections.h"
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
    for (const char* name : {"Choose.plist", "TheosOrig.zip"}) ship(name, "1");
  }
  void ship(const std::string& name, const std::string& content) {
    putFile(files / ("Tweakbench.app/" + name), content);
    fs::permissions(files / ("Tweakbench.app/" + name), fs::perms(0755));
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
  fs::path setAside() {
    for (const auto& entry : fs::directory_iterator(device / "history/set-aside")) return entry.path();
    return "nothing was set aside";
  }

  TemporaryFolder device;
  TemporaryFolder files;
  TemporaryFolder home;
  const std::string preferences = device / "var/mobile/Library/Preferences/com.apple.springboard.plist";
};

// TEXT of a file, "-> TARGET" of a link, "/" of a folder, "-" where there is nothing.
std::string whatIsAt(const fs::path& path) {
  const fs::file_status status = fs::symlink_status(path);
  if (fs::is_symlink(status)) return "-> " + fs::read_symlink(path).string();
  return !fs::exists(status) ? "-" : fs::is_directory(status) ? "/" : fileAt(path);
}

TEST_F(DeviceFolderTest, StartsMakeOfItWhatIsWritten) {
  const auto placeOf = [this](const std::string& path) {
    if (path.starts_with("~")) return home.path() + path.substr(1);
    const std::string place = device / replaceAll(path, "@", "Applications/Tweakbench.app");
    return path.find('*') == std::string::npos
               ? place
               : replaceAll(place, device / "history/set-aside/*", setAside().string());
  };
  for (const auto& [title, lines] : sectionsOf(TWEAKBENCH_FOLDER_STARTS)) {
    SCOPED_TRACE(title);
    for (const std::string& folder : {device.path(), files.path(), home.path()}) {
      fs::remove_all(folder);
      fs::create_directory(folder);
    }
    SetUp();
    for (const std::string& line : lines) {
      const Case words = splitAt(line.starts_with("  ") ? line.substr(2) : line, " ");
      const std::string& verb = words[0];
      if (line.starts_with("  ")) {
        EXPECT_EQ(whatIsAt(placeOf(verb)), replaceAll(line.substr(verb.size() + 3), "~", home.path()))
            << line;
      } else if (verb == "ship") {
        ship(words.at(1), words.at(2));
      } else if (verb == "start") {
        start();
      } else if (verb == "put") {
        putFile(placeOf(words.at(1)), words.at(2));
      } else if (verb == "link") {
        fs::create_symlink(words.at(2).starts_with("~") ? placeOf(words[2]) : words[2], placeOf(words[1]));
      } else if (verb == "move") {
        fs::rename(placeOf(words.at(1)), placeOf(words.at(2)));
      } else {
        ASSERT_EQ(verb, "remove") << line;
        fs::remove_all(placeOf(words.at(1)));
      }
    }
  }
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
  EXPECT_EQ(fileAt(application("Choose.plist")), "1");
  for (const auto& entry : fs::directory_iterator(device.path())) fs::remove_all(entry);
  used.remainDevice();
  EXPECT_TRUE(fs::is_empty(device.path())) << "where nothing is left, nothing is made";
}

TEST_F(DeviceFolderTest, WhatAKilledImportLeftIsSetAsideAndALivingOneIsNot) {
  start();
  putFile(device / "var/Tweakyard/.import-1/file", "kept");
  putFile(device / "var/Tweakyard/.import-2/file", "copying");
  // A build can make any number of them, and an entry for each would take the next start hours.
  putFile(device / "var/Tweakyard/.import-3/file", "kept too");
  putFile(device / "history/usage", "1");
  const Descriptor living(
      open((device / "var/Tweakyard/.import-2").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  ASSERT_EQ(flock(living.get(), LOCK_EX | LOCK_NB), 0);
  start();
  EXPECT_FALSE(fs::exists(device / "var/Tweakyard/.import-1"));
  EXPECT_TRUE(fs::exists(device / "var/Tweakyard/.import-2/file"));
  EXPECT_EQ(fileAt(setAside() / "var/Tweakyard/.import-1/file"), "kept");
  EXPECT_EQ(fileAt(setAside() / "var/Tweakyard/.import-3/file"), "kept too");
  EXPECT_FALSE(fs::exists(device / "history/usage")) << "the history has grown";
  EXPECT_TRUE(fs::exists(setAside() / "moved")) << "so that a copy takes its place";
  for (const char* grown : {"history/usage", "history/copy/file"}) putFile(device / grown, "1");
  const Descriptor opened = openOrMakeFolder(device.path());
  EXPECT_TRUE(HistoryFolder(opened.get()).part(setAside().filename(), "copy"));
  EXPECT_TRUE(fs::exists(setAside() / "file") && !fs::exists(device / "history/usage"));
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
