// Tables of cases that lie beside their test as text: one case a line, with the table's name in front and its
// fields parted by " | ". "\xHH" is the byte of that number. Lines that begin with "#" are comments.
#pragma once

#include "core/Text.h"
#include "support/TemporaryFolder.h"

#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using Case = std::vector<std::string>;

inline std::vector<std::string> splitAt(const std::string& text, const std::string& separator) {
  std::vector<std::string> parts{""};
  for (std::size_t start = 0; start < text.size();) {
    if (text.compare(start, separator.size(), separator) == 0) {
      parts.emplace_back();
      start += separator.size();
    } else if (text.compare(start, 2, "\\x") == 0) {
      parts.back() += static_cast<char>(std::stoi(text.substr(start + 2, 2), nullptr, 16));
      start += 4;
    } else {
      parts.back() += text[start++];
    }
  }
  return parts;
}

// The cases of a table in the file that the program is compiled with.
inline std::vector<Case> cases(const std::string& table) {
  std::vector<Case> rows;
  std::istringstream lines(fileAt(TWEAKBENCH_CASES));
  for (std::string line; std::getline(lines, line);) {
    if (line.ends_with("|")) line += " ";
    if (line.starts_with(table + " ")) rows.push_back(splitAt(line.substr(table.size() + 1), " | "));
  }
  EXPECT_GE(rows.size(), 4U) << "too few cases of " << table;
  return rows;
}

// Variables written as "NAME=VALUE NAME=VALUE".
inline std::map<std::string, std::string, std::less<>> environmentOf(const std::string& field) {
  std::map<std::string, std::string, std::less<>> variables;
  std::istringstream words(field);
  for (std::string word; words >> word;)
    variables[word.substr(0, word.find('='))] = word.substr(word.find('=') + 1);
  return variables;
}

// Compares what each case comes to with its last field; one that begins with "…" says a part of it.
inline void expectCases(const std::string& table, const std::function<std::string(const Case&)>& outcomeOf) {
  for (const Case& row : cases(table)) {
    const std::string outcome = outcomeOf(row);
    const bool isPart = row.back().starts_with("…");
    const std::string expected = isPart ? row.back().substr(std::string("…").size()) : row.back();
    EXPECT_TRUE(isPart ? outcome.find(expected) != std::string::npos : outcome == expected)
        << table << " " << testing::PrintToString(row) << "\nis: " << outcome;
  }
}
