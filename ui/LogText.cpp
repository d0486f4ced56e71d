#include "ui/LogText.h"

#include "core/Text.h"

#include <algorithm>

namespace {

constexpr std::size_t tabWidth = 8;
constexpr std::size_t longestPiece = 4096;  // bytes

// The column after `byte` when it begins at `column`.
std::size_t advanced(std::size_t column, char byte) {
  if (byte == '\t') return column - column % tabWidth + tabWidth;
  return startsCharacter(byte) ? column + 1 : column;
}

bool isPlain(std::string_view line) {
  return std::all_of(line.begin(), line.end(), [](char byte) { return byte != '\t' && (byte & 0x80) == 0; });
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
  lines_.clear();
  lines_.reserve(static_cast<std::size_t>(std::count(text_.begin(), text_.end(), '\n')) + 1);
  for (std::size_t begin = 0; begin < text_.size();) {
    const std::size_t end = std::min(text_.find('\n', begin), text_.size());
    addLine(begin, end);
    begin = end + 1;
  }
  setColumns(columns_);
}

void LogText::addLine(std::size_t begin, std::size_t end) {
  const bool whole =
      end - begin <= longestPiece || isPlain(std::string_view(text_).substr(begin, end - begin));
  std::size_t at = begin;
  do {
    std::size_t next = whole ? end : std::min(at + longestPiece, end);
    while (next < end && next > at + 1 && !startsCharacter(text_[next])) --next;
    const std::size_t columns = columnsOf(std::string_view(text_).substr(at, next - at));
    lines_.push_back({static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(columns)});
    at = next;
  } while (at < end);
}

void LogText::setColumns(std::size_t columns) {
  columns_ = std::max<std::size_t>(columns, 1);
  rowsBefore_.resize(lines_.size() + 1);
  std::size_t rows = 0;
  for (std::size_t line = 0; line < lines_.size(); ++line) {
    rowsBefore_[line] = static_cast<std::uint32_t>(rows);
    rows += std::max<std::size_t>((lines_[line].columns + columns_ - 1) / columns_, 1);
  }
  rowsBefore_.back() = static_cast<std::uint32_t>(rows);
}

std::string_view LogText::bytesOf(std::size_t line) const {
  const std::size_t begin = lines_[line].begin;
  const std::size_t next = line + 1 < lines_.size() ? lines_[line + 1].begin : text_.size();
  std::string_view bytes = std::string_view(text_).substr(begin, next - begin);
  if (bytes.ends_with('\n')) bytes.remove_suffix(1);
  return bytes;
}

std::size_t LogText::offsetInLine(std::size_t line, std::size_t column) const {
  const std::string_view bytes = bytesOf(line);
  // Only plain lines are held in pieces longer than this.
  if (bytes.size() > longestPiece || isPlain(bytes)) return std::min(column, bytes.size());
  std::size_t at = 0;
  std::size_t reached = 0;
  while (at < bytes.size() && (reached < column || !startsCharacter(bytes[at]))) {
    const std::size_t next = advanced(reached, bytes[at]);
    // A tab that crosses the edge belongs to the row in which it begins.
    reached = next;
    ++at;
  }
  return at;
}

LogText::Row LogText::row(std::size_t number) const {
  const auto after = std::upper_bound(rowsBefore_.begin(), rowsBefore_.end(), number);
  const auto line = static_cast<std::size_t>(after - rowsBefore_.begin()) - 1;
  const std::size_t column = (number - rowsBefore_[line]) * columns_;
  const std::size_t begin = lines_[line].begin;
  return {begin + offsetInLine(line, column), begin + offsetInLine(line, column + columns_)};
}

std::size_t LogText::rowAt(std::size_t offset) const {
  if (lines_.empty()) return 0;
  const auto after = std::upper_bound(lines_.begin(), lines_.end(), offset,
                                      [](std::size_t value, const Line& line) { return value < line.begin; });
  const auto line = static_cast<std::size_t>(after - lines_.begin()) - 1;
  const std::size_t inLine = std::min(offset - lines_[line].begin, bytesOf(line).size());
  const std::size_t column = columnsOf(bytesOf(line).substr(0, inLine));
  const std::size_t rows = rowsBefore_[line + 1] - rowsBefore_[line];
  return rowsBefore_[line] + std::min(column / columns_, rows - 1);
}
