#include "ui/LogText.h"

#include "core/Text.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr std::size_t tabWidth = 8;
constexpr std::size_t longestPiece = 4096;  // bytes
constexpr std::size_t blockBytes = 4096;    // a block is full with this many bytes
constexpr std::size_t blockLines = 64;      // or with this many lines
constexpr std::uint8_t wide = 255;          // the width follows in four bytes

// Such as the start of a colour: it is not seen.
bool takesNoColumn(char byte) {
  return static_cast<unsigned char>(byte) < ' ' && byte != '\t';
}

// The column after `byte` when it begins at `column`.
std::size_t advanced(std::size_t column, char byte) {
  if (byte == '\t') return column - column % tabWidth + tabWidth;
  return startsCharacter(byte) && !takesNoColumn(byte) ? column + 1 : column;
}

bool isPlain(std::string_view line) {
  // Without an early end, so that the compiler can look at many bytes at once.
  bool plain = true;
  for (const char byte : line) plain &= byte >= ' ' && (byte & 0x80) == 0;
  return plain;
}

std::size_t columnsOf(std::string_view line) {
  if (isPlain(line)) return line.size();
  std::size_t column = 0;
  for (const char byte : line) column = advanced(column, byte);
  return column;
}

}  // namespace

void LogText::setText(std::string text) {
  text_ = std::move(text);
  blocks_.clear();
  widths_.clear();
  widths_.reserve(static_cast<std::size_t>(std::count(text_.begin(), text_.end(), '\n')) + 1);
  blockIsFull_ = true;
  for (std::size_t begin = 0; begin < text_.size();) {
    if (text_[begin] == '\n') {
      begin = addEmptyLines(begin);
      continue;
    }
    const std::size_t end = std::min(text_.find('\n', begin), text_.size());
    addLine(begin, end);
    begin = end + 1;
  }
  widths_.shrink_to_fit();
  blocks_.shrink_to_fit();
  countRows();
}

void LogText::openBlock(std::size_t begin) {
  if (!blockIsFull_) return;
  blocks_.push_back({static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(widths_.size()), 0, 0});
  linesInBlock_ = 0;
}

std::size_t LogText::addEmptyLines(std::size_t begin) {
  openBlock(begin);
  std::size_t end = begin;
  while (end < text_.size() && text_[end] == '\n' && linesInBlock_ + (end - begin) < blockLines) ++end;
  widths_.insert(widths_.end(), end - begin, 0);
  linesInBlock_ += end - begin;
  blockIsFull_ = linesInBlock_ == blockLines;
  return end;
}

void LogText::addLine(std::size_t begin, std::size_t end) {
  const bool whole =
      end - begin <= longestPiece || isPlain(std::string_view(text_).substr(begin, end - begin));
  std::size_t at = begin;
  do {
    std::size_t next = whole ? end : std::min(at + longestPiece, end);
    while (next < end && next > at + 1 && !startsCharacter(text_[next])) --next;
    openBlock(at);
    addWidth(columnsOf(std::string_view(text_).substr(at, next - at)));
    ++linesInBlock_;
    // Lines of one block are told apart by their line feeds alone, so a piece ends its block.
    blockIsFull_ = next < end || linesInBlock_ == blockLines || next - blocks_.back().begin >= blockBytes;
    at = next;
  } while (at < end);
}

void LogText::addWidth(std::size_t columns) {
  blocks_.back().widest = std::max(blocks_.back().widest, static_cast<std::uint32_t>(columns));
  if (columns < wide) {
    widths_.push_back(static_cast<std::uint8_t>(columns));
    return;
  }
  const auto width = static_cast<std::uint32_t>(columns);
  std::uint8_t bytes[1 + sizeof width] = {wide};
  std::memcpy(bytes + 1, &width, sizeof width);
  widths_.insert(widths_.end(), std::begin(bytes), std::end(bytes));
}

std::size_t LogText::nextWidth(std::size_t& place) const {
  const std::uint8_t first = widths_[place++];
  if (first != wide) return first;
  std::uint32_t width = 0;
  std::memcpy(&width, widths_.data() + place, sizeof width);
  place += sizeof width;
  return width;
}

std::size_t LogText::rowsOf(std::size_t columns) const {
  return columns <= columns_ ? 1 : (columns + columns_ - 1) / columns_;
}

void LogText::setColumns(std::size_t columns) {
  columns = std::max<std::size_t>(columns, 1);
  if (columns != std::exchange(columns_, columns)) countRows();
}

void LogText::countRows() {
  std::size_t place = 0;
  rowCount_ = 0;
  for (std::size_t block = 0; block < blocks_.size(); ++block) {
    blocks_[block].rowsBefore = static_cast<std::uint32_t>(rowCount_);
    const std::size_t end = block + 1 < blocks_.size() ? blocks_[block + 1].width : widths_.size();
    if (blocks_[block].widest < wide && blocks_[block].widest <= columns_) {
      // A byte a line and a row a line.
      rowCount_ += end - std::exchange(place, end);
    }
    while (place < end) rowCount_ += rowsOf(nextWidth(place));
  }
}

class LogText::Walk {
 public:
  Walk(const LogText& text, std::size_t block) : text_(text), place_(text.blocks_[block].width) {
    const bool last = block + 1 == text.blocks_.size();
    end_ = last ? text.text_.size() : text.blocks_[block + 1].begin;
    widthsEnd_ = last ? text.widths_.size() : text.blocks_[block + 1].width;
    next_ = text.blocks_[block].begin;
    line_.rowsBefore = text.blocks_[block].rowsBefore;
    read();
  }

  const Line& line() const { return line_; }
  std::size_t rows() const { return text_.rowsOf(line_.columns); }
  // One past the line and its line feed.
  std::size_t next() const { return next_; }
  bool isLast() const { return place_ >= widthsEnd_; }

  void advance() {
    line_.rowsBefore += rows();
    read();
  }

 private:
  void read() {
    line_.begin = next_;
    line_.columns = text_.nextWidth(place_);
    // The last line ends with its block; a long one need not be searched for its end.
    const std::size_t feed = isLast() ? end_ - 1 : text_.text_.find('\n', line_.begin);
    next_ = feed + 1;
    line_.bytes = std::string_view(text_.text_).substr(line_.begin, next_ - line_.begin);
    if (line_.bytes.ends_with('\n')) line_.bytes.remove_suffix(1);
  }

  const LogText& text_;
  std::size_t place_;
  std::size_t widthsEnd_;
  std::size_t end_;
  std::size_t next_;
  Line line_{};
};

std::size_t LogText::offsetInLine(std::string_view line, std::size_t column) const {
  // Only plain lines are held in pieces longer than this.
  if (line.size() > longestPiece || isPlain(line)) return std::min(column, line.size());
  std::size_t at = 0;
  std::size_t reached = 0;
  while (at < line.size() && (reached < column || !startsCharacter(line[at]))) {
    // A tab that crosses the edge belongs to the row in which it begins.
    reached = advanced(reached, line[at]);
    ++at;
  }
  return at;
}

LogText::Row LogText::row(std::size_t number) const {
  const auto after =
      std::upper_bound(blocks_.begin(), blocks_.end(), number,
                       [](std::size_t value, const Block& block) { return value < block.rowsBefore; });
  Walk walk(*this, static_cast<std::size_t>(after - blocks_.begin()) - 1);
  while (!walk.isLast() && number >= walk.line().rowsBefore + walk.rows()) walk.advance();
  const Line& line = walk.line();
  const std::size_t column = (number - line.rowsBefore) * columns_;
  // What takes no column belongs to the row that follows it, and at the end to the last one.
  const bool last = column + columns_ >= line.columns;
  return {line.begin + offsetInLine(line.bytes, column),
          line.begin + (last ? line.bytes.size() : offsetInLine(line.bytes, column + columns_))};
}

std::size_t LogText::rowAt(std::size_t offset) const {
  if (blocks_.empty()) return 0;
  const auto after =
      std::upper_bound(blocks_.begin(), blocks_.end(), offset,
                       [](std::size_t value, const Block& block) { return value < block.begin; });
  Walk walk(*this, static_cast<std::size_t>(after - blocks_.begin()) - 1);
  while (!walk.isLast() && offset >= walk.next()) walk.advance();
  const Line& line = walk.line();
  const std::size_t column =
      columnsOf(line.bytes.substr(0, std::min(offset - line.begin, line.bytes.size())));
  return line.rowsBefore + std::min(column / columns_, walk.rows() - 1);
}
