#include "device/sandbox/Arguments.h"
#include "support/Sections.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace {

// The arguments, each option with its words on a line.
std::vector<std::string> argumentLines(const std::string& options) {
  static const MountedFolders none;
  Request request{none, options.find("no libraries") == std::string::npos, "/own files", "/srv/theos"};
  request.isTheosWritable = options.find("writable Theos") != std::string::npos;
  request.hasNetwork = options.find("network") != std::string::npos;
  request.environment = {{"HOME", "/var/mobile"}};
  request.rootLinks = {{"usr/lib", "/lib"}};
  request.dataFiles = {{20, "/etc/passwd"}};
  request.sockets = {{"/tmp/.X11-unix/X3", "/tmp/.X11-unix/X3"}, {"/run/user/1/bus", "/.host/accessibility"}};
  request.statusOutput = 30;
  std::vector<std::string> lines;
  for (const std::string& word : bwrapArguments(request)) {
    if (word.starts_with("--"))
      lines.push_back(word);
    else
      lines.back() += " " + word;
  }
  return lines;
}

// The small files, line by line. Which rules there are for fonts is the host's to say.
std::vector<std::string> fileLines(bool hasNetwork) {
  std::vector<std::string> lines;
  for (const auto& [path, content] : deviceDataFiles({1000, 1001, "/home/me"}, hasNetwork)) {
    if (hasNetwork && (path == "/etc/hosts" || path == "/etc/resolv.conf")) {
      lines.push_back(path + (content == fileAt(path) ? ": the host's" : ": other than the host's"));
      continue;
    }
    std::istringstream text(content);
    for (std::string line; std::getline(text, line);) {
      if (line.find("<include") == std::string::npos || line.find("50-user") != std::string::npos)
        lines.push_back(path + ": " + line);
    }
  }
  return lines;
}

TEST(Arguments, AreWhatIsWritten) {
  std::vector<std::string> expected;
  for (const auto& [options, lines] : sectionsOf(TWEAKBENCH_ARGUMENTS)) {
    if (options == "the files") expected.clear();
    for (const std::string& line : lines) {
      const std::size_t arrow = line.find(" => ");
      const auto found = std::find(expected.begin(), expected.end(), line.substr(0, arrow));
      if (arrow == std::string::npos || found == expected.end())
        expected.push_back(line);
      else if (arrow + 4 == line.size())
        expected.erase(found);
      else
        *found = line.substr(arrow + 4);
    }
    EXPECT_EQ(
        options.starts_with("the files") ? fileLines(options.ends_with("network")) : argumentLines(options),
        expected)
        << options;
  }
}

}  // namespace
