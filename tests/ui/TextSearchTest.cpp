// Finding words and files, and telling the parts of code apart.
#include "ui/controls/CodeColours.h"
#include "ui/controls/TextSearch.h"
#include "workspace/ProjectSearch.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

constexpr auto forward = SearchDirection::Forward;
constexpr auto backward = SearchDirection::Backward;

TEST(TextSearch, FindsTheNextPlaceEitherWayWhateverTheCase) {
  const std::string text = "Error: one. error: two. مشروع ERROR";
  const std::size_t second = text.find("error");
  const std::size_t last = text.find("ERROR");
  const struct {
    const char* why;
    std::string word;
    std::size_t from;
    SearchDirection direction;
    std::optional<std::size_t> found;
  } table[] = {
      {"at the place itself", "error", 0, forward, 0},
      {"behind it", "error", 1, forward, second},
      {"at the very end", "eRRor", second + 1, forward, last},
      {"nothing behind", "error", last + 1, forward, std::nullopt},
      {"backward from the end", "error", text.size(), backward, last},
      {"one that ends where it starts", "error", second + 5, backward, second},
      {"not one that is cut", "error", second + 4, backward, 0},
      {"nothing before", "error", 4, backward, std::nullopt},
      {"no ASCII", "مشروع", 0, forward, text.find("مشروع")},
      {"one byte", ".", 0, forward, text.find('.')},
      {"empty", "", 0, forward, std::nullopt},
      {"longer than the text", text + "x", 0, forward, std::nullopt},
      {"out of range", "error", 1'000'000, backward, last},
  };
  for (const auto& row : table)
    EXPECT_EQ(findWord(text, row.word, row.from, row.direction), row.found) << row.why;
}

TEST(TextSearch, GoesOnceRoundTheText) {
  EXPECT_EQ(findWordAround("abcab", "ab", 4, forward), 0U);
  EXPECT_EQ(findWordAround("abcab", "ab", 1, backward), 3U);
  EXPECT_EQ(findWordAround("xabx", "ab", 2, forward), 1U) << "a match across the start";
  EXPECT_EQ(findWordAround("xabx", "ab", 2, backward), 1U);
  EXPECT_EQ(findWordAround("xabx", "no", 2, backward), std::nullopt);
  EXPECT_EQ(findWordAround("", "a", 0, forward), std::nullopt);
}

TEST(ProjectSearch, TheBestFilesComeFirst) {
  const std::vector<std::string> paths{"Makefile",       "Tweak.x",
                                       "Sub/Tweak.x",    "layout/to/we/a/k",
                                       "SettingsView.m", "prefs/RootListController.m",
                                       "rlc.h",          "مشروع.txt"};
  const struct {
    const char* typed;
    std::vector<const char*> best;  // the first of them, in this order
    std::size_t count;
  } table[] = {
      {"", {"Makefile", "Tweak.x"}, 8},
      {"tweak", {"Tweak.x", "Sub/Tweak.x", "layout/to/we/a/k"}, 3},
      {"sub tw", {"Sub/Tweak.x"}, 1},
      {"s/t", {"Sub/Tweak.x"}, 2},
      {"rlc", {"rlc.h", "prefs/RootListController.m"}, 2},
      {"SV", {"SettingsView.m"}, 1},
      {"مشر", {"مشروع.txt"}, 1},
      {"kk", {}, 0},
  };
  for (const auto& row : table) {
    const std::vector<std::size_t> found = bestMatches(paths, row.typed);
    EXPECT_EQ(found.size(), row.count) << row.typed;
    for (std::size_t place = 0; place < std::min(row.best.size(), found.size()); ++place)
      EXPECT_EQ(paths[found[place]], row.best[place]) << row.typed;
  }
}

TEST(CodeColours, LogosIsToldFromWhatOnlyLooksLikeIt) {
  // Below each byte its part: comment, literal, keyword, directive, name, or a blank.
  const struct {
    std::string line, parts;
  } lines[] = {
      {"%hook Foo // %orig", "DDDDD     CCCCCCCC"},
      {"- (void)set:(id)x at:(int)y {", "   KKKK NNN  KK   NN  KKK    "},
      {"  int r = 5 % orig;", "  KKK     L        "},
      {"  return %orig(a, @\"%orig \\\" \");", "  KKKKKK DDDDD    LLLLLLLLLLLL  "},
      {"  x = @\"open", "      LLLLLL"},
      {"  [self log:a", "   KKKK NNN  "},
      {"        with:b ? self : nil];", "        NNNN     KKKK   KKK  "},
      {"  y = a ? b : c; /* from", "                 CCCCCCC"},
      {"here */ @selector(a:b:) z:", "CCCCCCC KKKKKKKKK N N    "},
      {"#import <A/B.h>", "DDDDDDD LLLLLLL"},
      {"@end '\\'' 1'000u", "KKKK LLLL LLLLLL"},
  };
  int state = 0;
  for (const auto& row : lines) {
    std::string parts(row.line.size() + 1, '\0');
    state = styleLogosLine(row.line + "\n", state, parts.data());
    std::string shown;
    for (const char part : parts.substr(0, row.line.size())) shown += " CLKDN"[static_cast<int>(part)];
    // Of names only the colon is left open.
    EXPECT_EQ(shown, row.parts.substr(0, row.line.size()) +
                         std::string(row.line.size() - std::min(row.line.size(), row.parts.size()), ' '))
        << row.line;
  }
}

TEST(CodeColours, ALineThatIsCutAnywhereStaysWithinItsBounds) {
  const std::string whole =
      "#import <A/b.h> @\"a\\\" 'b' %orig [x y:1'0] /* c */ - (id)z:(int)q { @selector(a:) }";
  for (std::size_t begin = 0; begin <= whole.size(); ++begin) {
    for (std::size_t end = begin; end <= whole.size(); ++end) {
      // Exactly as much room as there are bytes, which AddressSanitizer watches.
      const std::vector<char> line(whole.begin() + static_cast<long>(begin),
                                   whole.begin() + static_cast<long>(end));
      std::vector<char> parts(line.size(), 99);
      styleLogosLine({line.data(), line.size()}, 0, parts.data());
      EXPECT_EQ(std::count(parts.begin(), parts.end(), 99), 0);
    }
  }
}

TEST(CodeColours, TheLanguageFollowsTheNameOrTheFirstBytes) {
  const struct {
    const char *name, *text;
    CodeLanguage language;
  } table[] = {{"/p/Makefile", "", CodeLanguage::Makefile},
               {"common.mk", "", CodeLanguage::Makefile},
               {"Tweak.xm", "", CodeLanguage::Logos},
               {"a.plist", "<?xml", CodeLanguage::Xml},
               {"a.plist", "{ Filter", CodeLanguage::Logos},
               {"control", "", CodeLanguage::Control},
               {"layout/DEBIAN/postinst", "", CodeLanguage::Shell},
               {"run", "#!/bin/bash\n", CodeLanguage::Shell},
               {"notes", "x", CodeLanguage::Plain}};
  for (const auto& row : table) EXPECT_EQ(languageOf(row.name, row.text), row.language) << row.name;
}

}  // namespace
