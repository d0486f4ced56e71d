// A property list of any shape, read whole: for lists that are more than settings (PropertyList.h).
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// One value with all that lies below it. An owner of everything it holds.
struct PropertyListValue {
  using Array = std::vector<PropertyListValue>;
  using Dictionary = std::map<std::string, PropertyListValue, std::less<>>;

  // std::monostate stands for what nobody here reads (dates, data) and for text that is not valid UTF-8. A
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

// Absent when `bytes`, XML or binary, are no property list, or too large or too deep (PropertyListBounds.h).
// Keys that are not valid UTF-8 are dropped with their values.
std::optional<PropertyListValue> propertyListTree(std::string_view bytes);
