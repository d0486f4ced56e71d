// The doctor: what it makes of what it has seen, and of a build's log.
#include "device/Process.h"
#include "device/doctor/Checks.h"
#include "device/folder/Beneath.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <sys/stat.h>

#include <gtest/gtest.h>

namespace doctor {
namespace {

const char* const kPrograms[] = {"clang", "ldid",     "lipo",  "make",     "unzip",  "plistutil",
                                 "perl",  "dpkg-deb", "rsync", "fakeroot", "fc-list"};

// Nothing is wrong; with Theos, unless `theos` is empty.
Facts healthy(const std::string& theos = "/home/me/theos") {
  Facts facts;
  facts.bubblewrap = "/usr/bin/bwrap";
  facts.theos = theos;
  facts.device = "/home/me/.local/share/tweakbench/device";
  facts.deviceFolder = Facts::DeviceFolder::Good;
  facts.freeSpace = std::uintmax_t{10} << 30;
  DeviceFacts& seen = facts.inDevice.emplace();
  for (const char* name : kPrograms) seen.starts[name] = {std::string("/usr/bin/") + name, 0, "version 1"};
  seen.starts["make"].said = "GNU Make 4.3";
  for (const char* path :
       {"bin", "makefiles/common.mk", "makefiles/tweak.mk", "vendor/include", "vendor/include/.git",
        "vendor/lib", "vendor/lib/.git", "vendor/logos", "vendor/dm.pl", "sdks", "toolchain/linux/iphone"}) {
    seen.theosEntries[path] = Entry::Present;
  }
  seen.sdks = {{"iPhoneOS9.3.sdk", {9, 3}, Entry::Empty}, {"iPhoneOS14.5.sdk", {14, 5}, Entry::Present}};
  seen.target = {12, 0};
  seen.arabicFonts = 3;
  facts.trial.emplace();
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

TEST(Doctor, HealthySurroundingsGiveNoComplaint) {
  EXPECT_EQ(complaints(healthy()), "");
  EXPECT_TRUE(canBuild(findingsFor(healthy())));
}

TEST(Doctor, EveryFaultIsNamedOnceWithWhatToDo) {
  struct Row {
    const char* name;
    std::function<void(Facts&)> spoil;
    // The start of the one complaint, and a part of what to do.
    const char* complaint;
    const char* remedy;
  };
  const auto trial = [](const char* name, const Start& result) {
    return [name, result](Facts& facts) { facts.inDevice->starts[name] = result; };
  };
  const auto sdk = [](const std::vector<Sdk>& sdks) {
    return [sdks](Facts& facts) { facts.inDevice->sdks = sdks; };
  };
  const auto entry = [](const char* path, Entry state) {
    return [path, state](Facts& facts) { facts.inDevice->theosEntries[path] = state; };
  };
  const std::vector<Row> rows{
      {"foreign folder", [](Facts& facts) { facts.deviceFolder = Facts::DeviceFolder::OtherFiles; },
       "problem device: ", "--device"},
      {"other user's device", [](Facts& facts) { facts.deviceFolder = Facts::DeviceFolder::OfAnotherUser; },
       "problem device: ", "--device"},
      {"full disk", [](Facts& facts) { facts.freeSpace = 1000; }, "problem disk space: 0 MiB", "make room"},
      {"nearly full disk", [](Facts& facts) { facts.freeSpace = 100 << 20; }, "note disk space: 100 MiB",
       "make room"},
      {"blank in the path", [](Facts& facts) { facts.theos = "/home/me/my theos"; },
       "note Theos: ", "without blanks"},
      {"unpacked archive", entry("vendor/lib/.git", Entry::Missing), "problem Theos: vendor/lib/.git",
       "submodule update"},
      {"empty submodule", entry("vendor/logos", Entry::Empty), "problem Theos: vendor/logos is empty",
       "submodule update"},
      {"submodule missing with its mark",
       [](Facts& facts) {
         facts.inDevice->theosEntries["vendor/lib"] = facts.inDevice->theosEntries["vendor/lib/.git"] =
             Entry::Missing;
       },
       "problem Theos: vendor/lib is missing", "submodule update"},
      {"closed folder",
       [](Facts& facts) {
         facts.inDevice->closed = "toolchain/linux/iphone/bin";
         facts.inDevice->sdks.clear();
         facts.inDevice->starts.erase("clang");
       },
       "problem Theos: toolchain/linux/iphone/bin in", "chmod -R a+rX"},
      {"dangling clang",
       [](Facts& facts) {
         facts.inDevice->starts["clang"] = {};
         facts.inDevice->theosEntries["toolchain/linux/iphone/bin/clang"] = Entry::Astray;
       },
       "problem clang: toolchain/linux/iphone/bin/clang in Theos's folder is a link", "itself there"},
      {"clang without the right",
       [](Facts& facts) {
         facts.inDevice->starts["clang"] = {};
         facts.inDevice->theosEntries["toolchain/linux/iphone/bin/clang"] = Entry::Present;
       },
       "problem clang: toolchain/linux/iphone/bin/clang in Theos's folder may not be run", "chmod a+x"},
      {"half a Theos", entry("makefiles/tweak.mk", Entry::Missing), "problem Theos: makefiles/tweak.mk",
       "whole"},
      {"linked SDKs", entry("sdks", Entry::Astray), "problem SDKs: sdks in", "put the thing itself"},
      {"linked toolchain", entry("toolchain/linux/iphone", Entry::Astray),
       "problem toolchain: ", "put the thing itself"},
      {"no SDK", sdk({}), "problem SDKs: There is none", "install-sdk"},
      {"each SDK a link out",
       sdk({{"iPhoneOS9.3.sdk", {9, 3}, Entry::Astray}, {"iPhoneOS8.1.sdk", {8, 1}, Entry::Astray}}),
       "problem SDKs: sdks/iPhoneOS9.3.sdk in Theos's folder is a link", "itself there"},
      {"empty SDK", sdk({{"iPhoneOS9.3.sdk", {9, 3}, Entry::Empty}}), "problem SDKs: sdks/iPhoneOS9.3.sdk",
       "whole SDK"},
      {"old SDK", sdk({{"iPhoneOS9.3.sdk", {9, 3}, Entry::Present}}), "note SDKs: The newest is iPhoneOS9.3",
       "newer one"},
      {"no clang", trial("clang", {}), "problem clang: It is missing", "toolchain/linux/iphone"},
      {"clang without its library",
       trial("clang",
             {"/t/clang", 127, "clang: error while loading shared libraries: libtinfo.so.5: cannot open"}),
       "problem clang: /t/clang does not work: a library", "libtinfo.so.5"},
      {"ldid of another processor", trial("ldid", {"/t/ldid", 126, "/t/ldid: cannot execute binary file"}),
       "problem ldid: /t/ldid does not work: it is made for another", "toolchain"},
      {"ldid hangs", trial("ldid", {"/t/ldid", 124, ""}),
       "problem ldid: /t/ldid does not work: it did not end", "toolchain"},
      {"lipo crashes", trial("lipo", {"/t/lipo", 139, ""}),
       "problem lipo: /t/lipo does not work: it was killed", "signal 11"},
      {"old make", trial("make", {"/usr/bin/make", 0, "GNU Make 3.82"}), "problem make: ", "GNU Make 4"},
      {"half a perl", trial("perl", {"/usr/bin/perl", 2, "Can't locate Archive/Tar.pm"}),
       "problem perl: ", "apt install perl"},
      {"no lipo", trial("lipo", {}), "note lipo: ", "several processors"},
      {"no rsync", trial("rsync", {}), "problem rsync: ", "apt install rsync"},
      {"no fakeroot", trial("fakeroot", {}), "note fakeroot: ", "apt install fakeroot"},
      {"fakeroot refused",
       trial("fakeroot", {"/usr/bin/fakeroot", 1, "libfakeroot: connect: Permission denied"}),
       "problem fakeroot: ", "Permission denied"},
      {"no Arabic font", [](Facts& facts) { facts.inDevice->arabicFonts = 0; },
       "note fonts: ", "fonts-noto-core"},
      {"long log of a failed build",
       [](Facts& facts) {
         facts.buildLog = "make: *** No space left on device\nmake: *** [Makefile:6: all] Error 2\n";
         facts.buildLogCut = true;
       },
       "note last build: Near the end of its log: the build failed", "lines above"},
      {"nobody wanted a trial",
       [](Facts& facts) {
         facts.trial.reset();
         facts.isQuick = true;
       },
       "note trial build: Left out", "nothing was tried"},
      {"failed build", [](Facts& facts) { facts.buildLog = "make: *** [Makefile:6: all] Error 2\n"; },
       "note last build: Line 1", "lines above"},
  };
  for (const auto& row : rows) {
    Facts facts = healthy();
    row.spoil(facts);
    const std::string told = complaints(facts);
    EXPECT_TRUE(told.starts_with(row.complaint)) << row.name << ": " << told;
    EXPECT_NE(told.find(row.remedy), std::string::npos) << row.name << ": " << told;
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << row.name << ": " << told;
    EXPECT_EQ(canBuild(findingsFor(facts)), !told.starts_with("problem")) << row.name;
  }
  // What starts and then complains about its arguments is well.
  Facts usage = healthy();
  usage.inDevice->starts["ldid"] = {"/t/ldid", 1, "usage: ldid -S entitlements binary"};
  EXPECT_EQ(complaints(usage), "");
}

TEST(Doctor, ThePracticeTheosNeedsNoToolchain) {
  Facts facts = healthy("");
  facts.inDevice->theosEntries.clear();
  facts.inDevice->sdks.clear();
  for (const char* name : {"clang", "ldid", "lipo", "rsync", "fakeroot"}) facts.inDevice->starts.erase(name);
  EXPECT_TRUE(canBuild(findingsFor(facts))) << complaints(facts);
  EXPECT_NE(complaints(facts).find("note clang: It is missing, but"), std::string::npos);
  EXPECT_NE(complaints(facts).find("note Theos: "), std::string::npos);
  // The same where it was named by hand.
  facts.theos = "/usr/lib/tweakbench/theos";
  EXPECT_FALSE(canBuild(findingsFor(facts)));
  facts.inDevice->isPracticeTheos = true;
  EXPECT_TRUE(canBuild(findingsFor(facts))) << complaints(facts);
  facts.inDevice->starts.erase("dpkg-deb");
  EXPECT_FALSE(canBuild(findingsFor(facts)));
}

TEST(Doctor, WithoutADeviceItTellsWhyAndJudgesNothingUnseen) {
  Facts facts = healthy();
  facts.inDevice.reset();
  facts.deviceRefusal = "The device could not be set up: user namespaces are switched off.";
  facts.trial.reset();
  const std::string noTrial = "note trial build: Not made, since it cannot work before the rest is mended.\n";
  EXPECT_EQ(complaints(facts), "problem user namespaces: " + facts.deviceRefusal + "\n" + noTrial);
  facts.deviceRefusal = "Theos cannot be read by the device's user.";
  EXPECT_EQ(complaints(facts), "problem start: " + facts.deviceRefusal + "\n" + noTrial);
  facts.deviceRefusal.clear();
  facts.bubblewrapRefusal = "bubblewrap is not installed.";
  EXPECT_TRUE(complaints(facts).starts_with("problem bubblewrap: bubblewrap is not installed.\n"));
  facts = healthy();
  facts.theosRefusal = "x is no Theos.";
  facts.inDevice.reset();
  EXPECT_NE(complaints(facts).find("problem Theos: x is no Theos."), std::string::npos);
  EXPECT_FALSE(canBuild(findingsFor(facts)));
}

TEST(BuildLog, KnownMessagesAreExplainedAtTheirLine) {
  struct Row {
    const char* log;
    const char* meaning;
  };
  const std::vector<Row> rows{
      {"Makefile:4: /makefiles/common.mk: No such file or directory\n", "sets THEOS to nothing"},
      {"Makefile:9: /tweak.mk: No such file or directory\n", "sets THEOS to nothing"},
      {"Makefile:9: /Users/me/theos/makefiles/tool.mk: No such file or directory\n", "sets THEOS to nothing"},
      {"/opt/theos/makefiles/tweak.mk:5: /opt/theos/makefiles/instance/tweak.mk: No such file or directory\n",
       "not whole"},
      {"make: *** /opt/theos: Is a directory.  Stop.\n", "exports THEOS twice"},
      {"\033[0;36m==> \033[1;36mNotice:\033[m Neither plutil, ply, or libplist-utils are installed, so XML "
       "plist "
       "files were not optimized.\n",
       "apt install libplist-utils"},
      {"convert_xml_plist.sh: line 54: plistutil: command not found\n", "apt install libplist-utils"},
      {"\033[0;31m==> \033[1;31mError:\033[0m You do not have any SDKs in /opt/theos/sdks.\n", "TARGET"},
      {"==> Error: Your chosen SDK, “iPhoneOS9.9.sdk”, does not appear to exist.\n", "TARGET"},
      {"==> Error: Your current SYSROOT, “”, appears to be missing.\n", "TARGET"},
      {"==> Error: Your $THEOS/vendor/include and/or vendor/lib are missing.\n", "submodule"},
      {"*** You did not specify a target, and the \"linux\" platform does not define a default target.  "
       "Stop.\n",
       "iphone:clang:latest"},
      {"Makefile:3: *** Your project is located at a path that contains spaces\n", "rename the project"},
      {"==> Error: The project's path holds blanks, with which Theos cannot build: /a b\n",
       "rename the project"},
      {"*** The \"x\" package scheme does not exist.\n", "THEOS_PACKAGE_SCHEME"},
      {"==> Error: make package requires you to have a control file.\n", "no control file"},
      {"==> Error: The project has no control file.\n", "no control file"},
      {"==> Error: You are missing a filter property list.\n", "no filter list"},
      {"==> Error: The tweak P has no filter list: P.plist is missing.\n", "no filter list"},
      {"dpkg-deb: error: package name has characters that aren't lowercase alphanums or '-+.'\n",
       "package name"},
      {"dpkg-deb: error: control directory has bad permissions 777 (must be >=0755 and <=0775)\n",
       "chmod 755"},
      {"libfakeroot: connect: Permission denied\n", "update-alternatives"},
      {"fakeroot, while creating message channels: Function not implemented\n", "update-alternatives"},
      {"/bin/sh: line 1: /opt/theos/bin/ldid: cannot execute binary file: Exec format error\n", "processor"},
      {"clang: error while loading shared libraries: libz3.so.4: cannot open shared object file\n",
       "library"},
      {"bash: line 1: /opt/theos/bin/logos.pl: cannot execute: required file not found\n", "first line"},
      {"Makefile:12: warning: overriding recipe for target 'clean'\n", "more than once"},
      {"cp: error writing '_/x': No space left on device\n", "make room"},
      {"make[2]: *** [rules.mk:10: x.o] Error 137\n", "memory"},
      {"x.m:3: error: expected ';'\nmake[2]: *** [rules.mk:10: x.o] Error 1\nmake: *** [all] Error 2\n",
       "the first error is \"x.m:3: error: expected ';'\""},
      // As the build screen leaves it, with a lone escape.
      {"\033ldid.cpp(1): _assert\nmake[2]: *** [rules.mk:10: x.o] Error 1\n", "\"ldid.cpp(1): _assert\""},
      {"Makefile:12: *** missing separator.  Stop.\n", "\"Makefile:12: *** missing separator.  Stop.\""},
      {"make[2]: *** [rules.mk:10: x.o] Error 1\n", "lines above"},
  };
  for (const auto& row : rows) {
    const std::string log =
        std::string("> Making all for tweak P…\n\n") + row.log + row.log + "no end of line";
    const auto findings = explainBuildLog(log);
    ASSERT_EQ(findings.size(), 1U) << row.log;
    EXPECT_EQ(findings[0].verdict, Verdict::Note) << row.log;
    EXPECT_NE(findings[0].sentence.find(row.meaning), std::string::npos) << findings[0].sentence;
    EXPECT_TRUE(findings[0].sentence.starts_with("Line 3 ")) << findings[0].sentence;
  }
}

TEST(BuildLog, TheFirstErrorIsNamedBeforeWhatFollowsFromIt) {
  const std::string log =
      "> Making all for tweak P...\n==> Compiling Old.m (arm64)...\nOld.m:1: warning: unused\n"
      "==> Compiling Tweak.x (arm64)...\nIn file included from x.h:1:\nx.h:2: warning: cannot inline\nx.h:3: "
      "note: "
      "here\nTweak.x:3:1: error: expected ';'\nTweak.x:9:1: error: unknown\nmake[3]: *** [x.o] Error 1\n"
      "cp: No space left on device\n";
  const FirstError first = firstErrorIn(log);
  EXPECT_EQ(first.number, 8U);
  EXPECT_EQ(first.stage, "Compiling Tweak.x (arm64)...");
  const auto findings = explainBuildLog(log);
  ASSERT_EQ(findings.size(), 2U);
  EXPECT_TRUE(findings[0].sentence.starts_with("Line 8 ")) << findings[0].sentence;
  EXPECT_TRUE(findings[1].sentence.starts_with("Line 11 of its log: the disk")) << findings[1].sentence;
  // Nothing but warnings before make gave up: they are not blamed.
  EXPECT_EQ(
      firstErrorIn("==> Compiling a.m...\na.m:1: warning: error-prone\nmake: *** [a.o] Error 137\n").number,
      3U);
}

TEST(Trial, WhatWentWrongFirstIsNamedWithWhatToDo) {
  struct Row {
    const char* stage;
    const char* error;
    const char* remedy;
  };
  const std::vector<Row> rows{
      {"Linking tweak Trial (arm64)...",
       "/opt/theos/toolchain/linux/iphone/bin/ld: line 2: /usr/lib/llvm-99/ld: No such file or directory",
       "/usr/lib/llvm-99/ld is not there in the device"},
      {"Compiling Tweak.x (arm64)...", "Tweak.x:1:9: fatal error: 'Foundation/Foundation.h' file not found",
       "the SDK is not whole"},
      {"Compiling Tweak.x (arm64)...", "Tweak.x:5:10: fatal error: 'substrate.h' file not found",
       "submodule update"},
      {"Compiling Tweak.x (arm64)...", "<built-in>:1:10: fatal error: '/opt/theos/Prefix.pch' file not found",
       "Prefix.pch is missing in Theos's folder"},
      {"Preprocessing Tweak.x...", "bash: line 1: /opt/theos/bin/logos.pl: Permission denied", "chmod"},
      {"Preprocessing Tweak.x...", "syntax failure in logos", "vendor/logos"},
      {"Compiling Tweak.x (arm64)...",
       "bash: line 1: /opt/theos/toolchain//iphone/bin/clang: No such file or directory", "not whole"},
      {"Signing Trial...", "ldid.cpp(1): _assert", "put a working ldid"},
      {"", "/opt/theos/makefiles/common.mk:171: *** The \"iphone\" target is not supported.  Stop.",
       "get a whole copy of Theos"},
      {"Making stage for tweak Trial...", "cp: error writing: No space left on device", "make room"},
  };
  for (const auto& row : rows) {
    Facts facts = healthy();
    facts.trial->status = 1;
    facts.trial->log = std::string("==> Preprocessing Start.x...\n") + (*row.stage ? "==> " : "") +
                       row.stage + "\n" + row.error +
                       "\nmake[3]: *** [rules.mk:4: x.o] Error 1\nmake: *** [all] Error 2\n";
    if (*row.stage == 0) facts.trial->log = std::string(row.error) + "\n";
    const Finding told = findingsFor(facts).back();
    EXPECT_EQ(told.verdict, Verdict::Problem);
    for (const char* part : {row.stage, row.error, row.remedy})
      EXPECT_NE(told.sentence.find(part), std::string::npos) << part << ": " << told.sentence;
    EXPECT_FALSE(canBuild(findingsFor(facts)));
  }
  // Of an SDK that is too old a missing header is told as that.
  Facts facts = healthy();
  facts.inDevice->target = {15, 0};
  facts.trial = Trial{
      1, "==> Compiling Tweak.x...\nx.h:1: fatal error: 'New/New.h' file not found\nmake: *** [x] Error 1\n"};
  EXPECT_NE(findingsFor(facts).back().sentence.find("older than iOS 15.0"), std::string::npos);
  facts.trial = Trial{124, "==> Signing Trial...\n"};
  EXPECT_NE(findingsFor(facts).back().sentence.find("did not end in time, being at \"Signing Trial...\""),
            std::string::npos)
      << findingsFor(facts).back().sentence;
}

TEST(BuildLog, AGoodBuildIsLeftAlone) {
  EXPECT_TRUE(explainBuildLog("").empty());
  EXPECT_TRUE(explainBuildLog("\033[").empty());
  EXPECT_TRUE(explainBuildLog("half a line: no space left on device", true).empty());
  EXPECT_TRUE(explainBuildLog("> Making all for tweak Killed137…\n==> Compiling NoControlFile.m (arm64)…\n"
                              "make[1]: Nothing to be done\n==> Warning: Building for iOS 6.0\n"
                              "dpkg-deb: building package 'com.example.spaces' in './packages/x.deb'.\n")
                  .empty());
}

TEST(Probe, OnlyWholeLinesOfItsOwnKindAreBelieved) {
  const DeviceFacts facts = readProbe(
      "try\tmake\t0\t/usr/bin/make\tGNU Make 4.3\ntry\tclang\t127\t\t\ntry\tldid\tx\t/ldid\tsaid\n"
      "try\tlipo\t0\t/"
      "lipo\ttoo\tmany\nentry\tsdks\tastray\nentry\tvendor\tpresent\nentry\tmakefiles\tmissing\n"
      "practice\nsdk\tiPhoneOS9.3.sdk\tempty\nsdk\tA.sdk\nsdk\tiPhoneOS10.sdk\tpresent\ntarget\tlatest:12."
      "1\nclosed\tbin/x\nfonts\t7\nfonts\t9x\nnonsense\n\n" +
      std::string(5000, 'x'));
  EXPECT_EQ(facts.starts.size(), 2U);
  EXPECT_EQ(facts.starts.at("make").said, "GNU Make 4.3");
  EXPECT_TRUE(facts.starts.at("clang").path.empty());
  EXPECT_EQ(facts.theosEntries.at("sdks"), Entry::Astray);
  EXPECT_EQ(facts.theosEntries.at("vendor"), Entry::Present);
  EXPECT_EQ(facts.theosEntries.at("makefiles"), Entry::Missing);
  EXPECT_TRUE(facts.isPracticeTheos);
  ASSERT_EQ(facts.sdks.size(), 2U);
  EXPECT_EQ(facts.sdks[0].state, Entry::Empty);
  EXPECT_EQ(facts.newestSdk()->name, "iPhoneOS10.sdk");
  EXPECT_EQ(facts.target, Version(12, 1));
  EXPECT_TRUE(facts.isNewestSdkTooOld());
  EXPECT_EQ(facts.closed, "bin/x");
  EXPECT_EQ(facts.arabicFonts, 7);
}

TEST(Capture, KeepsBothStreamsAndStopsWhatTakesTooLong) {
  const Captured both =
      capture({"/bin/sh", "-c", "read x || echo out; echo err >&2; exit 3"}, std::chrono::seconds(60));
  EXPECT_EQ(both.status, 3);
  EXPECT_EQ(both.output, "out\n");
  EXPECT_EQ(both.errors, "err\n");
  const Captured flood =
      capture({"/bin/sh", "-c", "head -c 5000000 /dev/zero; kill -KILL $$"}, std::chrono::seconds(60));
  EXPECT_EQ(flood.status, 137);
  EXPECT_EQ(flood.output.size(), std::size_t{1} << 20);
  EXPECT_EQ(capture({"/bin/sleep", "1000"}, std::chrono::seconds(0)).status, 124);
  EXPECT_EQ(capture({"/no/such/program"}, std::chrono::seconds(60)).status, 127);
}

TEST(LastLog, OnlyAPlainFileIsReadAndOnlyItsEnd) {
  const TemporaryFolder place;
  const std::string path = place.path() + "/";
  const Descriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  std::ofstream(path + "log") << "beginning, end";
  std::ofstream(path + "empty");
  ASSERT_EQ(mkfifo((path + "pipe").c_str(), 0600), 0);
  ASSERT_EQ(symlink("log", (path + "link").c_str()), 0);
  EXPECT_EQ(readEndBeneath(folder.get(), "log", 3), "end");
  EXPECT_EQ(readEndBeneath(folder.get(), "log", 1000), "beginning, end");
  EXPECT_EQ(readEndBeneath(folder.get(), "empty", 1000), "");
  for (const char* name : {"pipe", "link", ".", "missing"})
    EXPECT_FALSE(readEndBeneath(folder.get(), name, 1000)) << name;
}

}  // namespace
}  // namespace doctor
