// The doctor: what it makes of what it has seen, and of a build's log.
#include "device/Process.h"
#include "device/doctor/Checks.h"
#include "support/Cases.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace {

// What the probe prints where nothing is wrong, without the lines that `changes` take away and with theirs.
std::string probed(const std::string& changes = "") {
  std::vector<std::string> lines{"fonts,3", "target,latest:12.0", "sdk,iPhoneOS9.3.sdk,empty",
                                 "sdk,iPhoneOS14.5.sdk,present", "try,make,0,/usr/bin/make,GNU Make 4.3"};
  for (const char* name :
       {"clang", "ldid", "lipo", "unzip", "plistutil", "perl", "dpkg-deb", "rsync", "fakeroot", "fc-list"})
    lines.push_back(std::string("try,") + name + ",0,/usr/bin/" + name + ",version 1");
  for (const char* path :
       {"bin", "makefiles/common.mk", "makefiles/tweak.mk", "vendor/include", "vendor/include/.git",
        "vendor/lib", "vendor/lib/.git", "vendor/logos", "vendor/dm.pl", "sdks", "toolchain/linux/iphone"})
    lines.push_back(std::string("entry,") + path + ",present");
  for (const std::string& change : splitAt(changes, "; ")) {
    if (change.starts_with("-")) {
      std::erase_if(lines, [&](const std::string& line) { return line.starts_with(change.substr(1)); });
    } else {
      lines.push_back(change);
    }
  }
  std::string output;
  for (const auto& line : lines) output += replaceAll(line, ",", "\t") + "\n";
  return output + std::string(5000, 'x');
}

// With Theos, unless `theos` is empty.
Facts healthy(const std::string& changes = "", const std::string& theos = "/home/me/theos") {
  Facts facts;
  facts.bubblewrap = "/usr/bin/bwrap";
  facts.theos = theos;
  facts.device = "/home/me/.local/share/tweakbench/device";
  facts.deviceFolder = Facts::DeviceFolder::Good;
  facts.freeSpace = std::uintmax_t{10} << 30;
  facts.inDevice = readProbe(probed(changes));
  facts.trial.emplace();
  for (const std::string& change : splitAt(changes, "; ")) {
    const std::string value = change.substr(change.find('=') + 1);
    if (change == "device=other files") facts.deviceFolder = Facts::DeviceFolder::OtherFiles;
    if (change == "device=of another user") facts.deviceFolder = Facts::DeviceFolder::OfAnotherUser;
    if (change.starts_with("free=")) facts.freeSpace = std::stoul(value);
    if (change.starts_with("theos=")) facts.theos = value;
    if (change.starts_with("log=")) facts.buildLog = value + "make: *** [Makefile:6: all] Error 2\n";
    if (change == "cut") facts.buildLogCut = true;
    if (change == "quick") facts.trial.reset(), facts.isQuick = true;
  }
  return facts;
}

// The findings that are not "ok", one on a line.
std::string complaints(const Facts& facts) {
  std::string result;
  for (const auto& finding : findingsFor(facts)) {
    if (finding.verdict == Verdict::Ok) continue;
    result += (finding.verdict == Verdict::Note ? "note " : "problem ") + finding.subject + ": " +
              finding.sentence + "\n";
  }
  return result;
}

// That there is the one complaint or none.
void expectComplaint(const Facts& facts, const std::string& begin, const std::string& remedy,
                     const std::string& about) {
  const std::string told = complaints(facts);
  EXPECT_TRUE(told.starts_with(begin) && told.find(remedy) != std::string::npos) << about << ": " << told;
  EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), begin.empty() ? 0 : 1) << about << ": " << told;
  EXPECT_EQ(canBuild(findingsFor(facts)), !begin.starts_with("problem")) << about;
}

TEST(Doctor, NamesEveryFaultOnceWithWhatToDo) {
  expectComplaint(healthy(), "", "", "nothing is wrong");
  for (const auto& row : cases("seen")) expectComplaint(healthy(row[0]), row[1], row.at(2), row[0]);
}

TEST(Doctor, ThePracticeTheosNeedsNoToolchain) {
  const std::string bare = "-entry; -sdk; -try,clang; -try,ldid; -try,lipo; -try,rsync; -try,fakeroot";
  const std::string told = complaints(healthy(bare, ""));
  EXPECT_TRUE(canBuild(findingsFor(healthy(bare, "")))) << told;
  EXPECT_NE(told.find("note clang: It is missing, but"), std::string::npos) << told;
  EXPECT_NE(told.find("note Theos: "), std::string::npos) << told;
  // The same where it was named by hand.
  EXPECT_FALSE(canBuild(findingsFor(healthy(bare))));
  EXPECT_TRUE(canBuild(findingsFor(healthy(bare + "; practice"))));
  EXPECT_FALSE(canBuild(findingsFor(healthy(bare + "; practice; -try,dpkg-deb"))));
}

TEST(BuildLog, KnownMessagesAreExplainedAtTheirLine) {
  for (const auto& row : cases("build-log")) {
    const std::string lines = replaceAll(row[0], "; ", "\n") + "\n";
    const auto findings = explainBuildLog("> Making all for tweak P…\n\n" + lines + lines + "no end of line");
    ASSERT_EQ(findings.size(), 1U) << row[0];
    EXPECT_EQ(findings[0].verdict, Verdict::Note) << row[0];
    EXPECT_NE(findings[0].sentence.find(row.at(1)), std::string::npos) << findings[0].sentence;
    EXPECT_TRUE(findings[0].sentence.starts_with("Line 3 ")) << findings[0].sentence;
  }
  for (const char* good :
       {"", "\033[",
        "> Making all for tweak Killed137…\n==> Compiling NoControlFile.m (arm64)…\nmake[1]: Nothing to be "
        "done\n"
        "==> Warning: Building for iOS 6.0\ndpkg-deb: building package 'com.example.spaces' in './x.deb'.\n"})
    EXPECT_TRUE(explainBuildLog(good).empty()) << good;
  EXPECT_TRUE(explainBuildLog("half a line: no space left on device", true).empty());
}

TEST(BuildLog, TheFirstErrorIsNamedBeforeWhatFollowsFromIt) {
  const std::string log =
      "> Making all for tweak P...\n==> Compiling Old.m (arm64)...\nOld.m:1: warning: unused\n"
      "==> Compiling Tweak.x (arm64)...\nIn file included from x.h:1:\nx.h:2: warning: cannot inline\n"
      "x.h:3: note: here\nTweak.x:3:1: error: expected ';'\nTweak.x:9:1: error: unknown\n"
      "make[3]: *** [x.o] Error 1\ncp: No space left on device\n";
  const FirstError first = firstErrorIn(log);
  EXPECT_EQ(first.number, 8U);
  EXPECT_EQ(first.stage, "Compiling Tweak.x (arm64)...");
  const auto findings = explainBuildLog(log);
  ASSERT_EQ(findings.size(), 2U);
  EXPECT_TRUE(findings[0].sentence.starts_with("Line 8 ")) << findings[0].sentence;
  EXPECT_TRUE(findings[1].sentence.starts_with("Line 11 of its log: the disk")) << findings[1].sentence;
  EXPECT_EQ(
      firstErrorIn("rm -f x\nIn file included from a.h:1\nWhile building module 'M':\n==> Notice: y\n \t\n"
                   "a: gone astray\nmake: *** [a] Error 2\n")
          .line,
      "a: gone astray");
  // Nothing but warnings before make gave up: they are not blamed.
  EXPECT_EQ(
      firstErrorIn("==> Compiling a.m...\na.m:1: warning: error-prone\nmake: *** [a.o] Error 137\n").number,
      3U);
}

TEST(Trial, WhatWentWrongFirstIsNamedWithWhatToDo) {
  const auto told = [](int status, const std::string& log, const std::string& changes = "") {
    Facts facts = healthy(changes);
    facts.trial = Trial{status, log};
    EXPECT_FALSE(canBuild(findingsFor(facts)));
    return findingsFor(facts).back().sentence;
  };
  const std::string failed = "make[3]: *** [rules.mk:4: x.o] Error 1\nmake: *** [all] Error 2\n";
  for (const auto& row : cases("trial")) {
    const std::string stage = row[0].empty() ? "" : "==> Preprocessing Start.x...\n==> " + row[0] + "\n";
    const std::string sentence = told(1, stage + row[1] + "\n" + (stage.empty() ? "" : failed));
    for (const std::string& part : row) EXPECT_NE(sentence.find(part), std::string::npos) << sentence;
  }
  // Of an SDK that is too old a missing header is told as that.
  EXPECT_NE(told(1, "==> Compiling Tweak.x...\nx.h:1: fatal error: 'New/New.h' file not found\n" + failed,
                 "target,latest:15.0")
                .find("older than iOS 15.0"),
            std::string::npos);
  EXPECT_NE(told(124, "==> Signing Trial...\n").find("did not end in time, being at \"Signing Trial...\""),
            std::string::npos);
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
