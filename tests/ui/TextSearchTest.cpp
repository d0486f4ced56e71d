#include "ui/controls/TextSearch.h"

#include <string>

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

}  // namespace
