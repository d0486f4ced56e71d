#include "ui/LogText.h"

#include <algorithm>
#include <random>
#include <utility>

#include <gtest/gtest.h>

namespace {

std::vector<std::string> rows(const LogText& text) {
  std::vector<std::string> all;
  for (std::size_t number = 0; number < text.rowCount(); ++number) {
    const LogText::Row row = text.row(number);
    all.push_back(text.text().substr(row.begin, row.end - row.begin));
  }
  return all;
}

TEST(LogText, WrapsLinesAtTheColumnsAndCutsNoCharacter) {
  const struct {
    const char* why;
    std::string text;
    std::vector<std::string> rows;
  } table[] = {
      {"empty", "", {}},
      {"one line, no end", "abc", {"abc"}},
      {"an end makes no line of its own", "abc\n", {"abc"}},
      {"empty lines count", "\n\nx", {"", "", "x"}},
      {"exactly full", "abcd\nef", {"abcd", "ef"}},
      {"wrapped", "abcdefghi", {"abcd", "efgh", "i"}},
      {"two bytes a letter", "مشروع", {"مشرو", "ع"}},
      {"four bytes a sign", "🌹🌹🌹🌹🌹", {"🌹🌹🌹🌹", "🌹"}},
      {"a colour's start takes no column", "\033abcd\033\n\033abcde", {"\033abcd\033", "\033abcd", "e"}},
      {"a tab fills its columns", "a\tbc", {"a\t", "", "bc"}},
  };
  for (const auto& row : table) {
    LogText text;
    text.setColumns(4);
    text.setText(row.text);
    if (std::string(row.why).starts_with("a tab")) {
      // However the tab is split over rows, all of the text is there once.
      std::string joined;
      for (const std::string& part : rows(text)) joined += part;
      EXPECT_EQ(joined, row.text);
    } else {
      EXPECT_EQ(rows(text), row.rows) << row.why;
    }
    for (std::size_t number = 0; number < text.rowCount(); ++number) {
      if (text.row(number).begin == text.row(number).end) continue;
      EXPECT_EQ(text.rowAt(text.row(number).begin), number) << row.why;
    }
  }
}

// The same rows, cut in the plainest way.
std::vector<std::string> plainRows(const std::string& text, std::size_t columns) {
  std::vector<std::string> all;
  std::size_t begin = 0;
  while (begin < text.size()) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    std::size_t seen = end;
    while (seen > begin && text[seen - 1] == '\033') --seen;
    std::string row;
    std::size_t taken = 0;
    for (std::size_t at = begin; at < end;) {
      std::size_t next = at + 1;
      while (next < end && (text[next] & 0xC0) == 0x80) ++next;
      if (taken == columns && at < seen) {
        all.push_back(std::exchange(row, {}));
        taken = 0;
      }
      row += text.substr(at, next - at);
      if (text[at] != '\033') ++taken;
      at = next;
    }
    all.push_back(row);
    begin = end + 1;
  }
  return all;
}

TEST(LogText, CutsManyLinesOfAllLengthsLikeAFewOnes) {
  std::mt19937 random(4711);
  const char* const characters[] = {"a", "b", " ", "ب", "…", "🌹", "\033"};
  std::string text;
  for (int line = 0; line < 1500; ++line) {
    const bool plain = random() % 2 == 0;
    const unsigned longest = line % 100 == 0 ? 900 : line % 7 == 0 ? 400 : 30;
    for (unsigned left = random() % longest; left > 0; --left) text += characters[random() % (plain ? 3 : 7)];
    text += '\n';
  }
  LogText cut;
  cut.setText(text);
  for (const std::size_t columns : {1U, 13U, 80U, 254U, 255U, 5000U}) {
    cut.setColumns(columns);
    const std::vector<std::string> expected = plainRows(text, columns);
    ASSERT_EQ(cut.rowCount(), expected.size()) << columns;
    ASSERT_EQ(rows(cut), expected) << columns;
    for (std::size_t number = 0; number < cut.rowCount(); number += 17) {
      if (cut.row(number).begin == cut.row(number).end) continue;
      ASSERT_EQ(cut.rowAt(cut.row(number).begin), number) << columns;
    }
  }
}

TEST(LogText, HoldsAHugeLineAndAMillionShortOnes) {
  LogText text;
  text.setColumns(100);
  text.setText(std::string(10'000'000, 'x'));
  EXPECT_EQ(text.rowCount(), 100'000U);
  EXPECT_EQ(text.row(99'999).end, 10'000'000U);
  // Where it is not plain ASCII, no row is far from a place that is known.
  std::string mixed;
  while (mixed.size() < 5'000'000) mixed += "…ab";
  text.setText(mixed);
  std::size_t covered = 0;
  for (std::size_t number = 0; number < text.rowCount(); ++number) {
    const LogText::Row row = text.row(number);
    ASSERT_EQ(row.begin, covered);
    ASSERT_EQ(text.rowAt(row.begin), number);
    covered = row.end;
  }
  EXPECT_EQ(covered, mixed.size());
  std::string lines;
  for (int line = 0; line < 1'000'000; ++line) lines += "make\n";
  text.setText(std::move(lines));
  EXPECT_EQ(text.rowCount(), 1'000'000U);
  EXPECT_EQ(text.row(999'999).begin, 4'999'995U);
}

}  // namespace
