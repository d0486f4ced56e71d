// The device's folder as its own builds may have left it.
#include "core/Text.h"
#include "device/folder/Beneath.h"
#include "device/folder/DeviceFolder.h"
#include "device/folder/HistoryFolder.h"
#include "support/Cases.h"
#include "support/RefusalOf.h"
#include "support/Sections.h"

#include <algorithm>
#include <ctime>
#include <fcntl.h>
#include <regex>
#include <set>
#include <sstream>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// TEXT of a file, "-> TARGET" of a link, "/" and what is in it of a folder, "-" where there is nothing; then
// other permissions than are usual in "[]", and "x2" for a file with two names.
std::string whatIsAt(const fs::path& path) {
  const fs::file_status status = fs::symlink_status(path);
  if (fs::is_symlink(status)) return "-> " + fs::read_symlink(path).string();
  if (!fs::exists(status)) return "-";
  if (!fs::is_directory(status) && !fs::is_regular_file(status)) return "odd";
  const bool isFile = fs::is_regular_file(status);
  std::string what = "/";
  if (isFile) {
    what = fs::file_size(path) > 1000 ? "large" : replaceAll(fileAt(path), "\n", "\\n");
  } else if (std::set<fs::path> entries(fs::directory_iterator(path), {}); entries.size() < 100) {
    for (const fs::path& entry : entries) what += " " + entry.filename().string();
  }
  std::ostringstream mode;
  mode << std::oct << static_cast<int>(status.permissions());
  if (mode.str() != (isFile ? "644" : "755")) what += " [" + mode.str() + "]";
  if (isFile && fs::hard_link_count(path) > 1) what += " x" + std::to_string(fs::hard_link_count(path));
  return what;
}

// A device, Tweakbench's files, and the user's home.
struct World {
  TemporaryFolder device;
  TemporaryFolder files;
  TemporaryFolder home;
  std::optional<DeviceFolder> held;
  std::vector<Descriptor> locks;

  // What is put by number, oldest first: set aside, or copied.
  std::vector<std::string> entriesOf(const std::string& folder) const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(device / folder)) {
      if (timeOf(entry.path().filename()) >= 0) names.insert(entry.path().filename());
    }
    return {names.begin(), names.end()};
  }
  std::string placeOf(const std::string& path) const {
    if (path.starts_with("~")) return home.path() + path.substr(1);
    static const std::regex numbered("(history(?:/set-aside)?)/([1-9])(/.*)?");
    if (std::smatch found; std::regex_match(path, found, numbered)) {
      const auto names = entriesOf(found[1]);
      const std::size_t index = std::stoul(found[2]) - 1;
      return device /
             (found[1].str() + "/" + (index < names.size() ? names[index] : "none") + found[3].str());
    }
    return device / replaceAll(path, "@", "Applications/Tweakbench.app");
  }
  std::string said(std::string text) const {
    for (const char* folder : {"history/set-aside", "history"}) {
      const auto names = fs::exists(device / folder) ? entriesOf(folder) : std::vector<std::string>();
      for (std::size_t at = 0; at < names.size(); ++at)
        text = replaceAll(text, names[at], std::to_string(at + 1));
    }
    return replaceAll(replaceAll(text, "tweakbench: ", ""), home.path(), "~");
  }
  HistoryFolder history() const { return HistoryFolder(openOrMakeFolder(device.path()).get()); }

  void perform(const Case& words) {
    const std::string& verb = words[0];
    const auto word = [&](std::size_t at) { return at < words.size() ? words[at] : std::string(); };
    const std::string place = placeOf(word(1));
    const fs::path var = device / "var";
    const Descriptor opened(open(var.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const HistoryTools tools{"/usr/bin/bwrap", "/usr/bin/rsync"};
    if (verb == "ship") {
      putFile(files / ("Tweakbench.app/" + word(1)), word(2));
      if (word(1) == converter) fs::permissions(files / "Tweakbench.app/ftt", fs::perms(0755));
    } else if (verb == "start" || verb == "hold") {
      const std::string at = word(2).empty() ? device.path() : placeOf(word(2));
      DeviceFolder folder(openOrMakeFolder(at), word(2).empty() ? "the device" : word(2));
      folder.complete(files.path(), word(1).empty() ? std::nullopt : std::optional(word(1)));
      if (verb == "hold") folder.share(), held.emplace(std::move(folder));
    } else if (verb == "end") {
      held.reset();
    } else if (verb == "remain") {
      held->remainDevice();
    } else if (verb == "lock") {
      locks.emplace_back(open(place.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
      ASSERT_EQ(flock(locks.back().get(), LOCK_EX | LOCK_NB), 0);
    } else if (verb == "put") {
      putFile(place, replaceAll(replaceAll(word(2), "␣", " "), "\\n", "\n"));
    } else if (verb == "old") {
      fs::last_write_time(place, fs::file_time_type(std::chrono::seconds(0)));
    } else if (verb == "size") {
      putFile(place, ""), fs::resize_file(place, std::stoull(word(2)));
    } else if (verb == "deep") {
      fs::path inside = place;
      for (int level = 0; level < std::stoi(word(2)); ++level) inside /= "d";
      fs::create_directories(inside);
    } else if (verb == "mode") {
      fs::permissions(place, fs::perms(std::stoi(word(2), nullptr, 8)));
    } else if (verb == "fifo") {
      mkfifo(place.c_str(), 0600);
    } else if (verb == "link") {
      fs::create_symlink(word(2).starts_with("~") ? placeOf(word(2)) : word(2), place);
    } else if (verb == "name") {
      fs::create_hard_link(place, placeOf(word(2)));
    } else if (verb == "move") {
      fs::rename(place, placeOf(word(2)));
    } else if (verb == "remove") {
      fs::remove_all(place);
    } else if (verb == "copy") {
      takeCopy(history(), opened.get(), tools, word(1) == "gaps" ? Insistence::Gaps : Insistence::Changes);
    } else if (verb == "part") {
      partMoved(history(), tools);
    } else if (verb == "backup") {
      history().beginBackup(opened.get(), word(1));
    } else if (verb == "whole") {
      history().finishBackup();
    } else {
      ASSERT_EQ(verb, "undo");
      history().undoBackup(opened.get());
    }
  }
};

TEST(DeviceFolder, IsMadeAndKeptAsIsWritten) {
  for (const auto& [title, lines] : sectionsOf(TWEAKBENCH_FOLDER)) {
    SCOPED_TRACE(title);
    World world;
    putFile(world.home / "precious", "kept");
    world.perform({"ship", "Choose.plist", "1"});
    for (std::size_t at = 0; at < lines.size();) {
      const std::string& line = lines[at++];
      testing::internal::CaptureStderr();
      const std::string refusal = refusalOf([&] { world.perform(splitAt(line, " ")); });
      std::istringstream sentences(world.said(testing::internal::GetCapturedStderr()) +
                                   (refusal == "none" ? "" : world.said(refusal) + "\n"));
      std::string found, expected;
      for (std::string each; std::getline(sentences, each);) found += "  ! " + each + "\n";
      for (; at < lines.size() && lines[at].starts_with("  "); ++at) {
        const std::string path = lines[at].substr(2, lines[at].find(' ', 2) - 2);
        if (path != "!") found += "  " + path + " " + world.said(whatIsAt(world.placeOf(path))) + "\n";
        expected += lines[at] + "\n";
      }
      EXPECT_EQ(found, expected) << line;
    }
  }
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
    EXPECT_TRUE(!readBeneath(opened.get(), path, 10) && (errno == ELOOP || errno == EXDEV)) << path;
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
