// Property lists, XML or binary, read with libplist: as settings and as whole trees.
#pragma once

#include "core/Text.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

inline constexpr std::size_t largestPropertyList = std::size_t{1} << 20;  // bytes
inline constexpr int deepestPropertyList = 64;                            // levels of arrays and dictionaries
inline constexpr std::size_t mostPropertyListValues = 20'000;   // values, shared ones counted each time
inline constexpr std::size_t mostPropertyListText = 4'000'000;  // bytes of text and data, counted likewise

bool isBinaryPropertyList(std::string_view bytes);

// Whether `bytes` may be handed to the library. True says nothing about the bytes being a property list at
// all.
bool isWithinPropertyListBounds(std::string_view bytes);

// One value of the dictionary in the file, XML or binary. Absent when there is no such key, when its value is
// no valid UTF-8 string, or when the file cannot be read: it is missing, no property list, no dictionary, or
// beyond the bounds above.
MaybeText propertyListValue(const std::string& path, const std::string& key);

// Reads the file, sets one key or, where `value` is absent, removes it, and writes XML over the file. A value
// that no property list can hold (control characters, no UTF-8) removes the key too: an old value that stays
// would be acted on as if it had been set. False if the file was not changed. One that cannot be read is not:
// the shipped files must exist, none is made here.
bool setPropertyListValue(const std::string& path, const std::string& key, const MaybeText& value);

// One value with all below it, which it owns.
struct PropertyListValue {
  using Array = std::vector<PropertyListValue>;
  using Dictionary = std::map<std::string, PropertyListValue, std::less<>>;

  // std::monostate is a date, data, or text that is not valid UTF-8: no caller reads these. A
  // whole number is a std::uint64_t only where it is past INT64_MAX.
  std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double, std::string, Array, Dictionary>
      value;

  // The value as that kind; null when it is another. Valid as long as this value is.
  const std::string* text() const { return std::get_if<std::string>(&value); }
  const Array* array() const { return std::get_if<Array>(&value); }
  const Dictionary* dictionary() const { return std::get_if<Dictionary>(&value); }

  // What a dictionary holds under `key`; null when this is no dictionary or holds no such key.
  const PropertyListValue* find(std::string_view key) const;
};

// Absent when `bytes`, XML or binary, are no property list, or beyond the bounds above.
// Keys that are not valid UTF-8 are dropped with their values.
std::optional<PropertyListValue> propertyListTree(std::string_view bytes);
