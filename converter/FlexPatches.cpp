#include "converter/FlexPatches.h"

#include "converter/LogosSource.h"

#include <array>
#include <iconv.h>

namespace {

std::string textUnder(const PropertyListValue& dictionary, std::string_view key) {
  const PropertyListValue* const value = dictionary.find(key);
  const std::string* const text = value == nullptr ? nullptr : value->text();
  return text == nullptr ? std::string() : *text;
}

std::optional<PropertyListValue> valueUnder(const PropertyListValue& dictionary, std::string_view key) {
  const PropertyListValue* const value = dictionary.find(key);
  if (value == nullptr) return std::nullopt;
  return *value;
}

const PropertyListValue::Array* arrayUnder(const PropertyListValue& dictionary, std::string_view key) {
  const PropertyListValue* const value = dictionary.find(key);
  return value == nullptr ? nullptr : value->array();
}

FlexUnit unitOf(const PropertyListValue& value) {
  const auto says = [&value](std::string_view key, bool answer) {
    const PropertyListValue* const found = value.find(key);
    return found != nullptr && truth(*found) == answer;
  };
  return {textUnder(value, "class"), textUnder(value, "method"), valueUnder(value, "returns"),
          valueUnder(value, "arguments"), !says("enabled", false) && !says("disabled", true)};
}

FlexPatch patchOf(const PropertyListValue& value) {
  FlexPatch patch{textUnder(value, "name"), textUnder(value, "application"), {}};
  if (const auto* const units = arrayUnder(value, "units")) {
    for (const PropertyListValue& unit : *units) patch.units.push_back(unitOf(unit));
  }
  return patch;
}

// XML converted to UTF-8 without a byte-order mark, since libplist reads no other; other bytes unchanged.
std::string inUTF8(std::string_view bytes) {
  constexpr std::array<std::pair<std::string_view, const char*>, 4> starts{
      {{"\xFF\xFE", "UTF-16"}, {"\xFE\xFF", "UTF-16"}, {{"<\0", 2}, "UTF-16LE"}, {{"\0<", 2}, "UTF-16BE"}}};
  if (bytes.starts_with("\xEF\xBB\xBF")) return std::string(bytes.substr(3));
  for (const auto& [start, encoding] : starts) {
    if (!bytes.starts_with(start)) continue;
    std::string input(bytes);
    std::string text(bytes.size() * 2, '\0');  // at most three bytes for each two
    char* from = input.data();
    char* to = text.data();
    std::size_t unread = input.size();
    std::size_t room = text.size();
    const iconv_t converter = iconv_open("UTF-8", encoding);
    iconv(converter, &from, &unread, &to, &room);
    iconv_close(converter);
    text.resize(text.size() - room);
    return text;
  }
  return std::string(bytes);
}

}  // namespace

std::optional<std::vector<FlexPatch>> flexPatches(std::string_view bytes) {
  const auto list = propertyListTree(inUTF8(bytes));
  const auto* const entries = list ? arrayUnder(*list, "patches") : nullptr;
  if (entries == nullptr) return std::nullopt;
  std::vector<FlexPatch> patches;
  for (const PropertyListValue& entry : *entries) {
    if (entry.dictionary() != nullptr) patches.push_back(patchOf(entry));
  }
  return patches;
}
