#include "core/Languages.h"
#include "core/Text.h"
#include "support/Cases.h"

#include <fstream>

#include <gtest/gtest.h>

namespace {

TEST(Text, OnlyStrictUTF8IsText) {
  EXPECT_TRUE(isValidUTF8(std::string(1000, 'a') + "مشروع 🌹" + std::string(1000, 'b')));
  expectCases("utf8", [](const Case& row) { return isValidUTF8(row[1]) ? "text" : "no text"; });
}

TEST(Text, ReplacementIsLiteralAndScansOnce) {
  expectCases("replace", [](const Case& row) { return replaceAll(row[0], row[1], row[2]); });
}

TEST(Text, AnAbsentValueIsWrittenOutAndNeverEmpty) {
  EXPECT_EQ(fill("rm -rf %@/%@", {std::string("a"), std::nullopt}), "rm -rf a/(null)");
  EXPECT_EQ(fill("%@ %@", {std::string("%@")}), "%@ (null)");
  EXPECT_EQ(fill("none 100%", {std::string("unused")}), "none 100%");
}

TEST(Text, NamesArePulledOutOfPaths) {
  expectCases("path",
              [](const Case& row) { return lastPathComponent(row[0]) + "," + pathExtension(row[0]); });
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
