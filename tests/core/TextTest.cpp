#include "core/Languages.h"
#include "core/Text.h"

#include <fstream>

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

// The texts were given to us; the list beside this test is their second copy, so a changed letter shows.
TEST(TextPairs, AreTheGivenTextsToTheByte) {
  using namespace text;
  std::ifstream given(TWEAKBENCH_TEXT_PAIRS);
  const auto expectNext = [&given](const std::string& text) {
    std::string line;
    ASSERT_TRUE(std::getline(given, line));
    EXPECT_EQ(text, ::replaceAll(line, "\\n", "\n"));
  };
  const auto expectPairs = [&expectNext](const auto&... pairs) {
    (expectNext(pairs.arabic + std::string("\t") + pairs.english), ...);
  };
  expectPairs(couldNotFindTheos, mustInstallTheos, ok, loadProject, cancel, createNewProject,
              createHeaderFile, changeFileName, addFlexPatch, projectOptions, whichOne, confirm,
              deleteCurrentProject, deleteOptions, deleteFilesOrProjects, deleteAllProjects,
              deleteAllProjectsQuestion, imSure, openInFilza, goToDebsFolder, importFromPath,
              exportProjectToPath, backUp, restore, deleteAllBackups, deleteDebsFolder, changeProjectName,
              changeLanguage, extraOptions, pathExample, import_, export_, arabic, english, done, error,
              noData, deleteAllBackupsQuestion, showSuccessAlert, makingYourTweak, pleaseWait, debIsReady,
              goToDebFolder, deviceSupportHint, addTheSource, developedBy, thanksForTheIdea);
  expectNext(notSupportedYet);
  expectNext(autoLanguage);
  EXPECT_EQ(given.peek(), EOF) << "a text that is in no pair";
}

}  // namespace
