// Finding words and files, and telling the parts of code apart.
#include "support/Cases.h"
#include "ui/controls/CodeColours.h"
#include "ui/controls/TextSearch.h"
#include "workspace/ProjectSearch.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

std::string placeOf(const std::optional<std::size_t>& found) {
  return found ? std::to_string(*found) : "none";
}
SearchDirection directionOf(const std::string& word) {
  return word == "forward" ? SearchDirection::Forward : SearchDirection::Backward;
}

TEST(TextSearch, FindsTheNextPlaceEitherWayWhateverTheCase) {
  expectCases("find", [](const Case& row) {
    return placeOf(
        findWord("Error: one. error: two. مشروع ERROR", row[1], std::stoul(row[2]), directionOf(row[3])));
  });
}

TEST(TextSearch, GoesOnceRoundTheText) {
  expectCases("around", [](const Case& row) {
    return placeOf(findWordAround(row[0], row[1], std::stoul(row[2]), directionOf(row[3])));
  });
}

TEST(ProjectSearch, TheBestFilesComeFirst) {
  const std::vector<std::string> paths{"Makefile",       "Tweak.x",
                                       "Sub/Tweak.x",    "layout/to/we/a/k",
                                       "SettingsView.m", "prefs/RootListController.m",
                                       "rlc.h",          "مشروع.txt"};
  expectCases("best", [&paths](const Case& row) {
    const std::vector<std::size_t> found = bestMatches(paths, row[0]);
    std::string best = std::to_string(found.size());
    for (std::size_t place = 0; place < std::min<std::size_t>(3, found.size()); ++place)
      best += ' ' + paths[found[place]];
    return best;
  });
}

TEST(CodeColours, LogosIsToldFromWhatOnlyLooksLikeIt) {
  int state = 0;
  expectCases("code", [&state](const Case& row) {
    std::string parts(row[0].size() + 1, '\0');
    state = styleLogosLine(row[0] + "\n", state, parts.data());
    std::string shown;
    for (const char part : parts.substr(0, row[0].size())) shown += ".CLKDN"[static_cast<int>(part)];
    return shown;
  });
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
  const std::map<CodeLanguage, std::string> names{
      {CodeLanguage::Makefile, "make"},   {CodeLanguage::Logos, "Logos"}, {CodeLanguage::Xml, "XML"},
      {CodeLanguage::Control, "control"}, {CodeLanguage::Shell, "shell"}, {CodeLanguage::Plain, "plain"}};
  expectCases("language", [&names](const Case& row) { return names.at(languageOf(row[0], row[1])); });
}

}  // namespace
