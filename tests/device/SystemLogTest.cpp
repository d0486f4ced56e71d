#include "device/Visible.h"
#include "device/session/SystemLog.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <filesystem>

#include <gtest/gtest.h>

namespace {

TEST(SystemLog, PassesOnTheWordsAlone) {
  const struct {
    std::string datagram;
    std::string words;
  } rows[] = {
      {"<13>Nov 22 23:59:59 Tweakbench: a handler: \"x\" is: gone", "a handler: \"x\" is: gone"},
      {"<13>Nov  2 03:09:59 Tweakbench[12]: words\n", "words"},
      {std::string("<13>Nov 22 23:59:59 Tweakbench: words\0", 38), "words"},
      {"<13>Nov 22 23:59:59 Tweakbench: \x1B[2Jmade up\nline", "?[2Jmade up?line"},
      {"no such form", "no such form"},
      {"", ""},
  };
  for (const auto& row : rows) EXPECT_EQ(wordsOf(row.datagram), row.words) << row.datagram;
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
