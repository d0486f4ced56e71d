#include "core/Text.h"
#include "core/TextPairs.h"

#include <fstream>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

namespace {

TEST(Text, OnlyStrictUTF8IsText) {
  const std::string wide = std::string(1000, 'a') + "مشروع 🌹" + std::string(1000, 'b');
  for (const std::string& valid : {std::string(), std::string("plain"), wide, std::string("\xED\x9F\xBF"),
                                   std::string("\xF4\x8F\xBF\xBF"), std::string("a\0b", 3)}) {
    EXPECT_TRUE(isValidUTF8(valid)) << valid;
  }
  const struct {
    const char* why;
    std::string bytes;
  } refused[] = {
      {"a lone continuation byte", "ab\x80"},
      {"cut off after eight ASCII bytes", "12345678\xD8"},
      {"cut off three-byte character", "\xE2\x82"},
      {"cut off four-byte character", "\xF0\x9F\x8C"},
      {"overlong slash", "\xC0\xAF"},
      {"overlong three bytes", "\xE0\x80\xAF"},
      {"overlong four bytes", "\xF0\x80\x80\xAF"},
      {"surrogate", "\xED\xA0\x80"},
      {"past the last character", "\xF4\x90\x80\x80"},
      {"Latin-1", "caf\xE9 au lait"},
      {"no continuation", "\xE2(\xA1"},
  };
  for (const auto& row : refused) EXPECT_FALSE(isValidUTF8(row.bytes)) << row.why;
}

TEST(Text, ReplacementIsLiteralAndScansOnce) {
  EXPECT_EQ(replaceAll("aCCbCCC", "CC", "x"), "axbxC");
  EXPECT_EQ(replaceAll("com.cc CC", "CC", "com.cc"), "com.cc com.cc");
  EXPECT_EQ(replaceAll("[[mm", "[m", ""), "[m");
  EXPECT_EQ(replaceAll("CC", "CC", "CCC"), "CCC");
}

TEST(Text, AnAbsentValueIsWrittenOutAndNeverEmpty) {
  EXPECT_EQ(fill("rm -rf %@/%@", {std::string("a"), std::nullopt}), "rm -rf a/(null)");
  EXPECT_EQ(fill("%@ %@", {std::string("%@")}), "%@ (null)");
  EXPECT_EQ(fill("none 100%", {std::string("unused")}), "none 100%");
}

TEST(Text, NamesArePulledOutOfPaths) {
  EXPECT_EQ(lastPathComponent("/var/Tweakyard/Projects/My.x"), "My.x");
  EXPECT_EQ(lastPathComponent("/var/Tweakyard/Projects/"), "Projects");
  EXPECT_EQ(lastPathComponent("name"), "name");
  EXPECT_EQ(lastPathComponent("/"), "/");
  EXPECT_EQ(pathExtension("a.b/Tweak.x"), "x");
  EXPECT_EQ(pathExtension(".hidden"), "");
  EXPECT_EQ(withoutBlanks(" My  Tweak\t"), "MyTweak\t");
}

const std::vector<TextPair>& allPairs() {
  static const std::vector<TextPair> pairs{text::couldNotFindTheos,
                                           text::mustInstallTheos,
                                           text::ok,
                                           text::loadProject,
                                           text::cancel,
                                           text::createNewProject,
                                           text::createHeaderFile,
                                           text::changeFileName,
                                           text::addFlexPatch,
                                           text::projectOptions,
                                           text::whichOne,
                                           text::confirm,
                                           text::deleteCurrentProject,
                                           text::deleteOptions,
                                           text::deleteFilesOrProjects,
                                           text::deleteAllProjects,
                                           text::deleteAllProjectsQuestion,
                                           text::imSure,
                                           text::openInFilza,
                                           text::goToDebsFolder,
                                           text::importFromPath,
                                           text::exportProjectToPath,
                                           text::backUp,
                                           text::restore,
                                           text::deleteAllBackups,
                                           text::deleteDebsFolder,
                                           text::changeProjectName,
                                           text::changeLanguage,
                                           text::extraOptions,
                                           text::pathExample,
                                           text::import_,
                                           text::export_,
                                           text::arabic,
                                           text::english,
                                           text::done,
                                           text::error,
                                           text::noData,
                                           text::deleteAllBackupsQuestion,
                                           text::showSuccessAlert,
                                           text::makingYourTweak,
                                           text::pleaseWait,
                                           text::debIsReady,
                                           text::goToDebFolder,
                                           text::deviceSupportHint,
                                           text::addTheSource,
                                           text::developedBy,
                                           text::thanksForTheIdea};
  return pairs;
}

// The texts were given to us; the list beside this test is their second copy, so a changed letter shows.
TEST(TextPairs, AreTheGivenTextsToTheByte) {
  std::ifstream given(TWEAKBENCH_TEXT_PAIRS);
  ASSERT_TRUE(given);
  std::string line;
  for (const TextPair& pair : allPairs()) {
    ASSERT_TRUE(std::getline(given, line));
    const std::string expected = replaceAll(line, "\\n", "\n");
    EXPECT_EQ(pair.arabic + std::string("\t") + pair.english, expected);
  }
  ASSERT_TRUE(std::getline(given, line));
  EXPECT_EQ(text::notSupportedYet, line);
  ASSERT_TRUE(std::getline(given, line));
  EXPECT_EQ(text::autoLanguage, line);
  EXPECT_FALSE(std::getline(given, line));
}

}  // namespace
