#include "device/Visible.h"
#include "device/session/SystemLog.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/file.h>

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
  for (const auto& row : rows) EXPECT_EQ(device::wordsOf(row.datagram), row.words) << row.datagram;
  EXPECT_EQ(device::visible("a\u009b1m\x9b"
                            "\u00e4\u0627\x1b[0m\xc3"),
            "a?1m?\u00e4\u0627?[0m?");
}

TEST(SystemLog, RemovesWhatKilledLaunchersLeft) {
  std::string abandoned = "/tmp/tweakbench-log-XXXXXX";
  std::string used = abandoned;
  ASSERT_NE(mkdtemp(used.data()), nullptr);
  const Descriptor lock(open(used.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  ASSERT_EQ(flock(lock.get(), LOCK_EX | LOCK_NB), 0);
  ASSERT_NE(mkdtemp(abandoned.data()), nullptr);
  std::ofstream(abandoned + "/log") << "socket";
  const device::SystemLog log;
  EXPECT_FALSE(std::filesystem::exists(abandoned));
  EXPECT_TRUE(std::filesystem::remove(used));
}

}  // namespace
