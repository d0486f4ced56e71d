// A long text cut into the rows of a fixed-pitch view: lines, and lines wrapped at a number of columns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Holds the text once, as UTF-8 of less than 4 GiB, and twelve bytes a line, so that a log of a hundred
// megabytes costs little more than its size. Offsets are bytes into text(); a row is one line of the view.
// What is not valid UTF-8 is shown as it decodes.
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
  // A line, or a piece of a line that is long and not plain ASCII, so that no place in it is far from a
  // begin.
  struct Line {
    std::uint32_t begin;
    std::uint32_t columns;  // what it takes unwrapped; equal to its bytes for plain ASCII
  };

  void addLine(std::size_t begin, std::size_t end);
  std::string_view bytesOf(std::size_t line) const;
  std::size_t offsetInLine(std::size_t line, std::size_t column) const;

  std::string text_;
  std::vector<Line> lines_;
  std::vector<std::uint32_t> rowsBefore_;  // rows before each line, and of all lines as the last
  std::size_t columns_ = 80;
};
