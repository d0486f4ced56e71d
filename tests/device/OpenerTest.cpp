// What the opener opens for a device that means harm, and what it does not.
#include "device/opener/Opener.h"
#include "device/sandbox/Environment.h"
#include "support/Cases.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using opener::Verdict;

TEST(OpenableAddress, FoldersOfTheDeviceAndPagesAreAllThatOpens) {
  const char* const kinds[] = {"refused: ", "folder: ", "page: "};
  const auto outcomeOf = [&](const std::string& url) {
    const OpenableAddress address = readAddress(url);
    return kinds[static_cast<int>(address.kind)] + address.value;
  };
  expectCases("address", [&](const Case& row) { return outcomeOf(row[0]); });
  EXPECT_NE(outcomeOf("https://example.com/" + std::string(3000, 'x')).find("too long"), std::string::npos);
}

// An opener with a program that notes its arguments and environment, and the application's end of the socket.
class OpenerTest : public testing::Test {
 protected:
  OpenerTest() {
    putFile(device / "var/P/inside", "of P");
    putFile(home / "precious", "kept");
    fs::create_directory(device / "Applications");
    folder_ = Descriptor(open(device.path().c_str(), O_PATH | O_DIRECTORY));
    program("for a; do printf '%s\\n' \"$a\" >> \"$OUT\"; done; ls \"$1\" >> \"$OUT\" 2> /dev/null; true");
    opener_.emplace(setting()).connect();
  }

  void program(const std::string& body) {
    putFile(home / "xdg-open", "#!/bin/sh\n" + body + "\n");
    chmod((home / "xdg-open").c_str(), 0755);
  }
  Opener::Setting setting() {
    return {folder_.get(),
            "/host/device",
            home / "xdg-open",
            {{"OUT", home / "out"}, {"PATH", "/usr/bin:/bin"}},
            home / "state/opener.log"};
  }
  void send(std::string_view bytes) {
    EXPECT_EQ(::send(opener_->applicationEnd().get(), bytes.data(), bytes.size(), 0),
              static_cast<ssize_t>(bytes.size()));
  }
  // Serves the opener until it has answered.
  opener::Answer answer() {
    // The path ends with a NUL here.
    opener::Answer answer{};
    while (recv(opener_->applicationEnd().get(), &answer, sizeof answer - 1, MSG_DONTWAIT) < 0) {
      std::vector<pollfd> watched;
      opener_->addTo(watched);
      poll(watched.data(), watched.size(), opener_->patience());
      opener_->serve();
    }
    return answer;
  }
  Verdict ask(const std::string& url) {
    const std::uint32_t number = ++number_;
    send(std::string(reinterpret_cast<const char*>(&number), sizeof number) + url);
    const opener::Answer got = answer();
    EXPECT_EQ(got.number, number);
    hostPath_ = got.hostPath;
    return got.verdict;
  }
  std::string log() { return fileAt(home / "state/opener.log"); }
  // What the program was given, as a path of this process.
  std::string shown() {
    const std::string out = fileAt(home / "out");
    return out.substr(0, out.find('\n'));
  }

  TemporaryFolder device;
  TemporaryFolder home;
  Descriptor folder_;
  std::optional<Opener> opener_;
  std::uint32_t number_ = 0;
  std::string hostPath_;
};

TEST_F(OpenerTest, AFolderIsShownWhateverBecomesOfItsName) {
  EXPECT_EQ(ask("filza:///var/P/"), Verdict::Opened);
  EXPECT_EQ(fileAt(home / "out"), shown() + "\ninside\n");
  EXPECT_EQ(fs::path(shown()).filename(), "P");
  // What a build puts in its place is not what the file manager gets.
  fs::rename(device / "var/P", device / "var/Q");
  fs::create_symlink(home / "precious", device / "var/P");
  EXPECT_EQ(fileAt(shown() + "/inside"), "of P");
  EXPECT_TRUE(fs::is_directory(shown()));
  const std::string place = fs::path(shown()).parent_path();
  opener_.reset();
  EXPECT_FALSE(fs::exists(place));
}

TEST_F(OpenerTest, AFolderIsShownUnderItsNameIfThatIsPlainAndFilesAndLinksAreRefused) {
  putFile(device / "var/run.desktop", "[Desktop Entry]\nExec=sh\n");
  fs::create_directory_symlink(home.path(), device / "var/link");
  fs::create_symlink(home / "precious", device / "var/file-link");
  mkfifo((device / "var/pipe").c_str(), 0600);
  fs::create_directory(home / "folder");
  expectCases("opened", [this](const Case& row) {
    if (row[1] == "no program")
      fs::remove(home / "xdg-open");
    else if (row[1] != "-")
      putFile(device / ("var/" + row[1] + "/inside"), "");
    fs::remove(home / "out");
    opener_.emplace(setting()).connect();
    const std::string url = "filza:///var/" + row[0];
    const Verdict verdict = ask(url);
    if (verdict == Verdict::Opened)
      return fs::path(shown()).filename().string() + " with " +
             fileAt(home / "out").substr(shown().size() + 1);
    if (verdict == Verdict::Unavailable) return "unavailable: " + hostPath_;
    EXPECT_FALSE(fs::exists(home / "out")) << url;
    return std::string(log().ends_with("Refused (not a folder of the device): " + url + "\n") ? "refused"
                                                                                              : log());
  });
}

TEST(ShownFolders, WhatAProcessLeftThatIsGoneIsRemovedAndNothingElse) {
  const TemporaryFolder temporary;
  const TemporaryFolder home;
  putFile(home / "precious", "kept");
  putFile(home / "1/precious", "kept");
  const std::string left = temporary / "tweakbench-folders-left";
  fs::create_directory(left);
  fs::create_directory_symlink("/proc/2147483647/fd/3", left + "/P");
  putFile(temporary / "tweakbench-folders-mine/1/notes", "kept");
  fs::create_directory_symlink(home.path(), temporary / "tweakbench-folders-link");
  ShownFolders living(temporary.path());
  const fs::path shown = living.show(Descriptor(open(home.path().c_str(), O_PATH | O_DIRECTORY)), "P");
  ShownFolders(temporary.path()).removeLeft();
  EXPECT_FALSE(fs::exists(left));
  EXPECT_EQ(fileAt(shown / "precious"), "kept") << "of one that lives";
  EXPECT_EQ(fileAt(temporary / "tweakbench-folders-mine/1/notes"), "kept");
  EXPECT_TRUE(fs::is_symlink(temporary / "tweakbench-folders-link"));
  EXPECT_EQ(fileAt(home / "1/precious"), "kept");
}

TEST_F(OpenerTest, WhoAsksTooOftenIsRefusedAndTheLogHasAnEnd) {
  putFile(home / "state/opener.log", std::string((256 << 10) + 1, 'x'));
  for (int i = 0; i < 5; ++i) EXPECT_EQ(ask("https://example.com/"), Verdict::Opened);
  EXPECT_EQ(ask("https://example.com/"), Verdict::Refused);
  const std::string time = log().substr(0, 20);
  EXPECT_EQ(log(), time + "Refused (too often): https://example.com/\n") << "it starts anew when it is large";
  const std::string out = fileAt(home / "out");
  EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 5);
  for (int i = 0; i < 1000; ++i) ask("file:///etc/passwd");
  const std::string all = log();
  EXPECT_TRUE(all.ends_with("Nothing more is noted in this run.\n"));
  EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 501);
}

TEST_F(OpenerTest, AProgramThatRunsOnHasOpened) {
  ASSERT_EQ(mkfifo((home / "end").c_str(), 0600), 0);
  program("exec cat \"$(dirname \"$OUT\")/end\"");
  Opener::Setting hasty = setting();
  hasty.soonEnough = std::chrono::milliseconds(50);
  opener_.emplace(std::move(hasty)).connect();
  const auto asked = std::chrono::steady_clock::now();
  EXPECT_EQ(ask("https://example.com/"), Verdict::Opened);
  EXPECT_GE(std::chrono::steady_clock::now() - asked, std::chrono::milliseconds(50));
  // Lets it end.
  EXPECT_TRUE(Descriptor(open((home / "end").c_str(), O_WRONLY)));
}

TEST_F(OpenerTest, PacketsThatAreNoRequestsDoNoHarm) {
  for (const std::string& packet : {std::string("abc"), std::string("abcd"), std::string(100'000, 'x')}) {
    send(packet);
    EXPECT_EQ(answer().verdict, Verdict::Refused);
  }
  EXPECT_EQ(ask(std::string("https://example.com/\033]0;x\a")), Verdict::Refused);
  EXPECT_EQ(log().find('\033'), std::string::npos);
  EXPECT_EQ(ask("https://example.com/"), Verdict::Opened);
}

}  // namespace
