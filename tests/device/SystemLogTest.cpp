#include "device/Visible.h"
#include "device/session/SystemLog.h"
#include "support/Cases.h"

#include <fcntl.h>
#include <filesystem>

#include <gtest/gtest.h>

namespace {

TEST(SystemLog, PassesOnTheWordsAlone) {
  expectCases("datagram", [](const Case& row) { return wordsOf(row[0]); });
  EXPECT_EQ(visible("a\u009b1m\x9b"
                    "\u00e4\u0627\x1b[0m\xc3"),
            "a?1m?\u00e4\u0627?[0m?");
}

TEST(SystemLog, ReplacesTheSocketOfAKilledLauncher) {
  const TemporaryFolder folder;
  const std::string socket = folder / ("log." + std::to_string(getpid()));
  putFile(socket, "left");
  const Descriptor opened(open(folder.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  {
    const SystemLog log(opened.get(), folder.path());
    EXPECT_EQ(log.path(), socket);
    EXPECT_TRUE(std::filesystem::is_socket(socket));
  }
  EXPECT_FALSE(std::filesystem::exists(socket));
}

}  // namespace
