// Tests that are written as text.
#pragma once

#include "support/TemporaryFolder.h"

#include <sstream>
#include <string>
#include <utility>
#include <vector>

// The lines of a file, without the empty ones and those that begin with '#'.
inline std::vector<std::string> linesOf(const std::string& path) {
  std::vector<std::string> lines;
  std::istringstream text(fileAt(path));
  for (std::string line; std::getline(text, line);) {
    if (!line.empty() && !line.starts_with('#')) lines.push_back(line);
  }
  return lines;
}

// What is between the tabs of a line.
inline std::vector<std::string> cellsOf(const std::string& line) {
  std::vector<std::string> cells;
  std::istringstream text(line + '\t');
  for (std::string cell; std::getline(text, cell, '\t');) cells.push_back(cell);
  return cells;
}

struct Section {
  std::string title;
  std::vector<std::string> lines;
};

// Sections begin with "== TITLE"; what comes before the first is one without a title.
inline std::vector<Section> sectionsOf(const std::string& path) {
  std::vector<Section> sections{{}};
  for (const std::string& line : linesOf(path)) {
    if (line.starts_with("== "))
      sections.push_back({line.substr(3), {}});
    else
      sections.back().lines.push_back(line);
  }
  return sections;
}
