#include "core/Languages.h"
#include "core/Text.h"
#include "support/Cases.h"

#include <gtest/gtest.h>

namespace {

TEST(Text, OnlyStrictUTF8IsText) {
  EXPECT_TRUE(isValidUTF8(std::string(1000, 'a') + "مشروع 🌹" + std::string(1000, 'b')));
  expectCases("utf8", [](const Case& row) { return isValidUTF8(row[1]) ? "text" : "no text"; });
}

TEST(Text, IsShownWithoutWhatIsNoCharacterOrColoursIt) {
  expectCases("shown", [](const Case& row) { return withReplacementCharacters(row[0]); });
  expectCases("plain", [](const Case& row) { return withoutSequences(row[0]); });
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

// The list beside this test is their second copy. Of the other texts in it the transcripts see each one.
TEST(TextPairs, AreTheGivenTextsToTheByte) {
  const std::string given = "\n" + fileAt(TWEAKBENCH_TEXT_PAIRS);
  for (const TextPair& pair : {text::couldNotFindTheos, text::mustInstallTheos, text::showSuccessAlert})
    EXPECT_NE(given.find('\n' + std::string(pair.arabic) + '\t' + pair.english + '\n'), std::string::npos)
        << pair.english;
}

}  // namespace
