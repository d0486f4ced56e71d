// A long text cut into the rows of a fixed-pitch view: lines, and lines wrapped at a number of columns.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Holds the text once, as UTF-8, and a few bytes a line, so that a log of a hundred megabytes costs little
// more than its size. Offsets are bytes into text(); a row is one line of the view. Not valid UTF-8 is shown
// as it decodes.
class LogText {
 public:
  struct Row {
    std::size_t begin;  // offset of the row's first byte
    std::size_t end;    // one past its last, without the line feed
  };

  void setText(std::string text);
  const std::string& text() const { return text_; }

  // How many columns a row has; at least 1. Costs time in proportion to the number of lines, not of bytes.
  void setColumns(std::size_t columns);

  std::size_t rowCount() const { return rowsBefore_.empty() ? 0 : rowsBefore_.back(); }
  Row row(std::size_t number) const;
  std::size_t rowAt(std::size_t offset) const;

 private:
  struct Line {
    std::size_t begin;
    std::size_t columns;  // what the unwrapped line takes; equal to its bytes for plain ASCII
  };

  std::string_view bytesOf(std::size_t line) const;
  std::size_t offsetInLine(std::size_t line, std::size_t column) const;

  std::string text_;
  std::vector<Line> lines_;
  std::vector<std::size_t> rowsBefore_;  // rows before each line, and of all lines as the last
  std::size_t columns_ = 80;
};
