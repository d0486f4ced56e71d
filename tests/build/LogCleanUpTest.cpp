#include "build/LogCleanUp.h"
#include "core/FileManager.h"
#include "support/Cases.h"
#include "support/PlainCleanUp.h"
#include "support/TemporaryFolder.h"

#include <random>

#include <gtest/gtest.h>

namespace {

TEST(LogCleanUp, RemovesTheKnownSequencesOfEachBuild) {
  expectCases("cleaned", [](const Case& row) {
    return "<" + cleanedLog(row[1], BuildVariant::Package) + "> <" +
           cleanedLog(row[1], BuildVariant::Install) + ">";
  });
}

// Logs made of the stuff that patterns are made of, so that removals keep completing each other.
TEST(LogCleanUp, EqualsTheReplacementsOneAfterTheOther) {
  const char* const pieces[] = {"[",        "[",          "m",    "0",   "1",      ";",      "31m",
                                "39m",      ">",          "[m",   "[0m", "[1;31m", "[0;1;3", "3;",
                                "[1;3;39m", "\x1B[0;32m", "text", "\n",  "[0;34m", "2m"};
  std::mt19937 random(20'240'611);
  std::size_t changed = 0;
  for (int round = 0; round < 60'000; ++round) {
    std::string log;
    const unsigned length = random() % 24;
    for (unsigned piece = 0; piece < length; ++piece) log += pieces[random() % std::size(pieces)];
    for (const BuildVariant variant : {BuildVariant::Package, BuildVariant::Install}) {
      const std::string expected = cleanedPlainly(log, variant);
      ASSERT_EQ(cleanedLog(log, variant), expected) << "from: " << log;
      if (expected != log) ++changed;
    }
  }
  EXPECT_GT(changed, 30'000U);
}

// Files are cleaned piece by piece; where the pieces end must not show.
TEST(LogCleanUp, CleansLargeFilesAsIfInOnePieceAndLeavesAloneWhatIsNoText) {
  const TemporaryFolder folder;
  std::string lines;
  while (lines.size() < 1'500'000)
    lines +=
        "\x1B[0;32m==> \x1B[1;39mCompiling [[mm \xE2\x80\xA6\x1B[m\n" + std::string(lines.size() % 97, 'x');
  std::string oneLine;
  while (oneLine.size() < 1'500'000) oneLine += "[0;31m[[1m0m\xD8\xB9";
  for (const std::string& log : {lines, oneLine, lines + oneLine + "\n" + lines}) {
    putFile(folder / "log", log);
    cleanLog(folder / "log", BuildVariant::Package);
    EXPECT_TRUE(fileAt(folder / "log") == cleanedPlainly(log, BuildVariant::Package));
  }
  for (const std::string& noText : {lines + "\xFF\n" + lines, std::string("\033[mcaf\xE9"), std::string()}) {
    putFile(folder / "log", noText);
    cleanLog(folder / "log", BuildVariant::Package);
    EXPECT_TRUE(fileAt(folder / "log") == noText) << "not even in part";
  }
  cleanLog(folder / "missing", BuildVariant::Package);
  EXPECT_EQ(*contentsOfDirectoryAtPath(folder.path()), std::vector<std::string>{"log"});
}

}  // namespace
