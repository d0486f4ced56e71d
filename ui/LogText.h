// A long text cut into the rows of a fixed-pitch view: lines, and lines wrapped at a number of columns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Holds the text once, as UTF-8 of less than 4 GiB, and little more than a byte a line, so that a log never
// costs much more than twice its size, even one of empty lines. Offsets are bytes into text(); a row is one
// line of the view. What is not valid UTF-8 is shown as it decodes.
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

  std::size_t rowCount() const { return rowCount_; }
  Row row(std::size_t number) const;
  std::size_t rowAt(std::size_t offset) const;

 private:
  // Some lines, few enough to be walked through. A line that is long and not plain ASCII is cut into pieces,
  // each the last of its block, so that no place in it is far from a begin.
  struct Block {
    std::uint32_t begin;
    std::uint32_t width;       // where the widths of its lines begin
    std::uint32_t widest;      // of its lines
    std::uint32_t rowsBefore;  // rows of all blocks before
  };

  struct Line {
    std::size_t begin;
    std::string_view bytes;
    std::size_t columns;     // what it takes unwrapped; equal to its bytes for plain ASCII
    std::size_t rowsBefore;  // of the whole text
  };

  // Goes through the lines of a block.
  class Walk;

  void openBlock(std::size_t begin);
  // Adds the empty lines from `begin` on that the block has room for; returns where they end.
  std::size_t addEmptyLines(std::size_t begin);
  // Adds the line that ends at `end`, without its line feed.
  void addLine(std::size_t begin, std::size_t end);
  void addWidth(std::size_t columns);
  std::size_t nextWidth(std::size_t& place) const;
  void countRows();
  std::size_t rowsOf(std::size_t columns) const;
  std::size_t offsetInLine(std::string_view line, std::size_t column) const;

  std::string text_;
  std::vector<Block> blocks_;
  // One byte a line, or that byte full and the width in the four that follow.
  std::vector<std::uint8_t> widths_;
  std::size_t linesInBlock_ = 0;
  bool blockIsFull_ = true;
  std::size_t rowCount_ = 0;
  std::size_t columns_ = 80;
};
