#include "core/PropertyList.h"

#include <cstdint>
#include <optional>

namespace {

constexpr std::string_view binaryMagic = "bplist00";
constexpr std::size_t mostXMLContainers = 4'000;

// --- XML: levels are counted by tags, whatever their names.

// The end of the markup that begins at `at` ("<…"), one past its last character; npos when it is cut off.
std::size_t markupEnd(std::string_view text, std::size_t at) {
  const auto endOf = [text, at](std::string_view terminator) {
    const std::size_t found = text.find(terminator, at);
    return found == std::string_view::npos ? found : found + terminator.size();
  };
  const std::string_view rest = text.substr(at);
  if (rest.starts_with("<!--")) return endOf("-->");
  if (rest.starts_with("<![CDATA[")) return endOf("]]>");
  if (rest.starts_with("<?")) return endOf("?>");
  return endOf(">");
}

// How often `tag` is opened anywhere, comments included.
std::size_t openings(std::string_view text, std::string_view tag) {
  std::size_t count = 0;
  for (std::size_t at = text.find(tag); at != std::string_view::npos; at = text.find(tag, at + tag.size()))
    ++count;
  return count;
}

bool isXMLWithinBounds(std::string_view text) {
  // libplist mixes counted and NUL-terminated strings.
  if (text.find('\0') != std::string_view::npos) return false;
  // A crafted text may have comments that the library reads differently from the scan below, but it cannot
  // nest deeper than its number of containers.
  if (openings(text, "<array") + openings(text, "<dict") > mostXMLContainers) return false;
  int depth = 0;
  std::size_t values = 0;
  for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at)) {
    const std::size_t end = markupEnd(text, at);
    if (end == std::string_view::npos) return true;  // cut off: the library finds no list in it
    const char kind = text[at + 1];
    if (kind == '/') {
      --depth;
    } else if (kind != '!' && kind != '?') {
      // <plist> and the value's own tag are not levels.
      if (++values > 2 * mostPropertyListValues) return false;
      if (text[end - 2] != '/' && ++depth > deepestPropertyList + 2) return false;
    }
    at = end;
  }
  return true;
}

// --- Binary: an offset table at the end, objects that refer to each other by number.

class BinaryList {
 public:
  explicit BinaryList(std::string_view bytes) : bytes_(bytes) {}

  // Whether everything below the top object, shared objects counted each time, stays within the bounds.
  bool isWithinBounds() {
    constexpr std::size_t trailerSize = 32;
    if (bytes_.size() < binaryMagic.size() + trailerSize) return false;
    const std::size_t trailer = bytes_.size() - trailerSize;
    offsetSize_ = static_cast<unsigned char>(bytes_[trailer + 6]);
    referenceSize_ = static_cast<unsigned char>(bytes_[trailer + 7]);
    objects_ = number(trailer + 8, 8);
    const std::uint64_t top = number(trailer + 16, 8);
    table_ = number(trailer + 24, 8);
    const auto validSize = [](unsigned size) { return size >= 1 && size <= 8; };
    if (!validSize(offsetSize_) || !validSize(referenceSize_)) return false;
    if (objects_ > mostPropertyListValues || table_ > trailer) return false;
    return objects_ * offsetSize_ <= trailer - table_ && visit(top, 0);
  }

 private:
  std::uint64_t number(std::size_t at, unsigned size) const {
    std::uint64_t value = 0;
    for (unsigned index = 0; index < size; ++index)
      value = value << 8 | static_cast<unsigned char>(bytes_[at + index]);
    return value;
  }

  bool visit(std::uint64_t object, int depth) {
    if (object >= objects_ || depth > deepestPropertyList || ++visited_ > mostPropertyListValues)
      return false;
    const std::uint64_t at = number(table_ + object * offsetSize_, offsetSize_);
    if (at >= bytes_.size()) return false;
    const unsigned marker = static_cast<unsigned char>(bytes_[at]);
    const unsigned kind = marker >> 4;
    if (kind >= data && kind <= wideText) return countText(marker, at);
    constexpr unsigned array = 0xA;
    constexpr unsigned set = 0xC;
    constexpr unsigned dictionary = 0xD;
    if (kind != array && kind != set && kind != dictionary) return true;
    std::uint64_t first = at + 1;
    const auto count = countAt(marker & 0xF, first, mostPropertyListValues);
    if (!count) return false;
    const std::uint64_t references = kind == dictionary ? 2 * *count : *count;
    if (references > (bytes_.size() - first) / referenceSize_) return false;
    for (std::uint64_t index = 0; index < references; ++index) {
      const std::uint64_t member = number(first + index * referenceSize_, referenceSize_);
      if (!visit(member, depth + 1)) return false;
      // The library ends the process over a key that is no text.
      if (kind == dictionary && index < *count && !isText(member)) return false;
    }
    return true;
  }

  bool isText(std::uint64_t object) const {
    const unsigned kind =
        static_cast<unsigned char>(bytes_[number(table_ + object * offsetSize_, offsetSize_)]) >> 4;
    return kind == plainText || kind == wideText;
  }

  // Adds a text's or a data's bytes to the sum. False too for a text with a zero in it.
  bool countText(unsigned marker, std::uint64_t at) {
    const unsigned kind = marker >> 4;
    const unsigned unit = kind == wideText ? 2 : 1;
    std::uint64_t first = at + 1;
    const auto length = countAt(marker & 0xF, first, bytes_.size());
    if (!length || *length > (bytes_.size() - first) / unit) return false;
    text_ += unit * *length;
    if (text_ > mostPropertyListText) return false;
    if (kind == data) return true;
    for (std::uint64_t index = 0; index < *length; ++index) {
      if (number(first + index * unit, unit) == 0) return false;
    }
    return true;
  }

  // The number of members; `first` is moved to the first of them. Absent when it is more than `most` or the
  // bytes end before.
  std::optional<std::uint64_t> countAt(unsigned low, std::uint64_t& first, std::uint64_t most) const {
    constexpr unsigned countFollows = 0xF;
    if (low != countFollows) return low;
    if (first >= bytes_.size()) return std::nullopt;
    const unsigned size = 1U << (static_cast<unsigned char>(bytes_[first]) & 0x3);
    if (bytes_.size() - first - 1 < size) return std::nullopt;
    const std::uint64_t count = number(first + 1, size);
    first += 1 + size;
    if (count > most) return std::nullopt;
    return count;
  }

  static constexpr unsigned data = 0x4;
  static constexpr unsigned plainText = 0x5;
  static constexpr unsigned wideText = 0x6;  // two bytes a unit

  std::string_view bytes_;
  unsigned offsetSize_ = 0;
  unsigned referenceSize_ = 0;
  std::uint64_t objects_ = 0;
  std::uint64_t table_ = 0;
  std::size_t visited_ = 0;
  std::uint64_t text_ = 0;
};

}  // namespace

bool isBinaryPropertyList(std::string_view bytes) {
  return bytes.starts_with(binaryMagic);
}

bool isWithinPropertyListBounds(std::string_view bytes) {
  if (bytes.size() > largestPropertyList) return false;
  return isBinaryPropertyList(bytes) ? BinaryList(bytes).isWithinBounds() : isXMLWithinBounds(bytes);
}
