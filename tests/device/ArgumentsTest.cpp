#include "device/sandbox/Arguments.h"
#include "support/Sections.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace {

// The arguments, each option with its words on a line.
std::vector<std::string> argumentLines(const std::string& options) {
  static const DeviceFolders none;
  Request request{none, false, "/own files", "/srv/theos"};
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

TEST(Arguments, AreWhatIsWritten) {
  std::vector<std::string> expected;
  for (const auto& [options, lines] : sectionsOf(TWEAKBENCH_ARGUMENTS)) {
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
    EXPECT_EQ(argumentLines(options), expected) << options;
  }
}

}  // namespace
