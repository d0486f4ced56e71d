// The doctor: what it makes of what it has seen, and of a build's log.
#include "device/Process.h"
#include "device/doctor/Checks.h"
#include "support/Cases.h"
#include "support/Sections.h"

#include <array>
#include <map>

#include <gtest/gtest.h>

namespace {

// What the probe prints where nothing is wrong, without the lines that `changes` take away and with theirs.
std::string probed(const std::vector<std::string>& changes) {
  std::vector<std::string> lines{"fonts,3", "target,latest:12.0", "sdk,iPhoneOS9.3.sdk,empty",
                                 "sdk,iPhoneOS14.5.sdk,present", "try,make,0,/usr/bin/make,GNU Make 4.3"};
  for (const char* name :
       {"clang", "ldid", "lipo", "unzip", "plistutil", "perl", "dpkg-deb", "rsync", "fakeroot", "fc-list"})
    lines.push_back(std::string("try,") + name + ",0,/usr/bin/" + name + ",version 1");
  for (const char* path :
       {"bin", "makefiles/common.mk", "makefiles/tweak.mk", "vendor/include", "vendor/include/.git",
        "vendor/lib", "vendor/lib/.git", "vendor/logos", "vendor/dm.pl", "sdks", "toolchain/linux/iphone"})
    lines.push_back(std::string("entry,") + path + ",present");
  std::string output = "closed\t" + std::string(5000, 'x') + "\n";
  for (const std::string& change : changes) {
    if (change.starts_with("-"))
      std::erase_if(lines, [&](const std::string& line) { return line.starts_with(change.substr(1)); });
    else if (change.find(": ") == std::string::npos || change.find(',') < change.find(": "))
      lines.push_back(change);
  }
  for (const auto& line : lines) output += replaceAll(line, ",", "\t") + "\n";
  return output;
}

Facts factsOf(const std::vector<std::string>& changes) {
  Facts facts;
  facts.bubblewrap = "/usr/bin/bwrap";
  facts.theos = "/home/me/theos";
  facts.device = "/home/me/.local/share/tweakbench/device";
  facts.deviceFolder = Facts::DeviceFolder::Good;
  facts.freeSpace = std::uintmax_t{10} << 30;
  facts.inDevice = readProbe(probed(changes));
  facts.trial.emplace();
  const std::map<std::string, Facts::DeviceFolder> folders{
      {"other files", Facts::DeviceFolder::OtherFiles},
      {"of another user", Facts::DeviceFolder::OfAnotherUser},
      {"new", Facts::DeviceFolder::NotYetMade}};
  for (const std::string& change : changes) {
    const std::string name = change.substr(0, change.find(": "));
    const std::string value = change.substr(std::min(change.size(), name.size() + 2));
    if (name == "device") facts.deviceFolder = folders.at(value);
    if (name == "free") facts.freeSpace = std::stoul(value);
    if (name == "theos") facts.theos = value;
    if (name == "no theos") facts.theosRefusal = value;
    if (name == "bubblewrap") facts.bubblewrapRefusal = value;
    if (name == "refusal") facts.deviceRefusal = value;
    if (name == "nothing starts") facts.inDevice.reset(), facts.trial.reset();
    if (name == "log") facts.buildLog = replaceAll(value, "\\n", "\n");
    if (name == "cut") facts.buildLogCut = true;
    if (name == "quick") facts.isQuick = true;
    if (name == "quick" || name == "no trial") facts.trial.reset();
    if (name == "trial")
      facts.trial = {std::stoi(value), replaceAll(value.substr(value.find(' ') + 1), "\\n", "\n")};
  }
  return facts;
}

TEST(Doctor, FindsWhatIsWrittenAndSaysWhatToDo) {
  constexpr std::array words{"ok", "note", "problem"};
  for (const auto& [title, lines] : sectionsOf(TWEAKBENCH_DOCTOR)) {
    for (std::size_t at = 0; at < lines.size();) {
      const std::string& line = lines[at++];
      std::string expected;
      for (; at < lines.size() && lines[at].starts_with("  "); ++at) expected += lines[at] + "\n";
      const auto findings = findingsFor(factsOf(splitAt(line, "; ")));
      std::string found;
      for (const auto& [verdict, subject, sentence] : findings) {
        if (verdict != Verdict::Ok || line.starts_with("all"))
          found +=
              std::string("  ") + words[static_cast<int>(verdict)] + " " + subject + ": " + sentence + "\n";
      }
      EXPECT_EQ(found, expected) << title << "\n" << line;
      EXPECT_EQ(canBuild(findings), found.find("  problem ") == std::string::npos) << line;
    }
  }
}

TEST(Capture, KeepsBothStreamsAndStopsWhatTakesTooLong) {
  const auto shell = [](const char* line) {
    return capture({"/bin/sh", "-c", line}, std::chrono::seconds(60));
  };
  const Captured both = shell("read x || echo out; echo err >&2; exit 3");
  EXPECT_EQ(both.status, 3);
  EXPECT_EQ(both.output, "out\n");
  EXPECT_EQ(both.errors, "err\n");
  const Captured flood = shell("head -c 5000000 /dev/zero; kill -KILL $$");
  EXPECT_EQ(flood.status, 137);
  EXPECT_EQ(flood.output.size(), std::size_t{1} << 20);
  EXPECT_EQ(capture({"/bin/sleep", "1000"}, std::chrono::seconds(0)).status, 124);
  EXPECT_EQ(capture({"/no/such/program"}, std::chrono::seconds(60)).status, 127);
}

}  // namespace
