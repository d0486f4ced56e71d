#include "device/sandbox/Arguments.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace {

using Words = std::vector<std::string>;

Request plainRequest() {
  static const DeviceFolders none;
  Request request{none, true};
  request.ownFiles = "/own files";
  request.theos = "/srv/theos";
  request.environment = {{"HOME", "/var/mobile"}};
  request.rootLinks = {{"usr/lib", "/lib"}};
  request.dataFiles = {{20, "/etc/passwd"}};
  request.statusOutput = 30;
  return request;
}

bool holds(const Words& words, const Words& sequence) {
  return std::search(words.begin(), words.end(), sequence.begin(), sequence.end()) != words.end();
}

// What is mounted or made, in order: the last word of each option that names a place in the device.
std::vector<std::string> places(const Words& words) {
  std::vector<std::string> result;
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    const std::string& word = words[i];
    if (word.find("bind") != std::string::npos || word == "--symlink" || word == "--file")
      result.push_back(words.at(i + 2));
    if (word == "--tmpfs" || word == "--proc" || word == "--dev" || word == "--dir")
      result.push_back(words[i + 1]);
  }
  return result;
}

TEST(Arguments, WhatIsInMemoryHasASizeAndNothingOutlivesItsLauncher) {
  const Words words = bwrapArguments(plainRequest());
  for (const char* flag : {"--unshare-uts", "--unshare-cgroup", "--assert-userns-disabled", "--new-session",
                           "--die-with-parent", "--cap-drop"})
    EXPECT_EQ(std::count(words.begin(), words.end(), flag), 1) << flag;
  EXPECT_LT(std::find(words.begin(), words.end(), "--clearenv"),
            std::find(words.begin(), words.end(), "--setenv"));
  for (std::size_t i = 0; i < words.size(); ++i)
    EXPECT_TRUE(words[i] != "--tmpfs" || words.at(i - 2) == "--size") << words.at(i + 1);
  EXPECT_TRUE(std::equal(words.end() - 4, words.end(), Words{"--remount-ro", "/", "--chdir", "/"}.begin()));
}

TEST(Arguments, NothingIsMountedBelowWhatTheDeviceCanWrite) {
  Request request = plainRequest();
  request.sockets = {{"/tmp/.X11-unix/X3", "/tmp/.X11-unix/X3"}, {"/run/user/1/bus", "/.host/accessibility"}};
  const auto all = places(bwrapArguments(request));
  ASSERT_GT(all.size(), 20U);
  for (const auto& place : all) {
    for (const char* writable : {"/Applications/", "/var/", "/usr/bin/", "/private/var/"}) {
      EXPECT_FALSE(place.starts_with(writable)) << place;
    }
  }
}

TEST(Arguments, OptionsOpenOnlyWhatTheyName) {
  const Words plain = bwrapArguments(plainRequest());
  Request open = plainRequest();
  open.hasNetwork = true;
  const Words networked = bwrapArguments(open);
  EXPECT_EQ(networked.size(), plain.size() - 1);
  EXPECT_EQ(std::count(networked.begin(), networked.end(), "--unshare-net"), 0);
  Request request = plainRequest();
  request.isTheosWritable = true;
  Words writable = bwrapArguments(request);
  EXPECT_TRUE(holds(writable, {"--bind", "/srv/theos", "/opt/theos"}));
  std::replace(writable.begin(), writable.end(), std::string("--bind"), std::string("--ro-bind"));
  EXPECT_EQ(writable, plain);
}

}  // namespace
