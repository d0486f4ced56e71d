// Property lists, XML or binary, read with libplist: as settings (PropertyList) and as whole trees
// (PropertyListValue).
#pragma once

#include "core/Text.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
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

struct PropertyListRelease {
  void operator()(void* node) const;
};
using PropertyListNode = std::unique_ptr<void, PropertyListRelease>;

// Reads XML or binary. None when `bytes` are no property list, or beyond the bounds above.
PropertyListNode parsedPropertyList(std::string_view bytes);

// A dictionary read from a file, XML or binary. Move-only; one thread at a time.
class PropertyList {
 public:
  // Absent when the file is missing, no property list, no dictionary, or beyond the bounds above.
  static std::optional<PropertyList> initWithContentsOfFile(const std::string& path);

  // Absent when there is no such key or its value is no valid UTF-8 string.
  MaybeText objectForKey(const std::string& key) const;

  // A value that no property list can hold (control characters, no UTF-8) removes the key: an old value that
  // stays would be acted on as if it had been set.
  void setObject(const std::string& value, const std::string& key);
  void removeObjectForKey(const std::string& key);

  // Writes XML over the file at `path`, in either form. False if the file was not changed.
  bool writeToFile(const std::string& path) const;

 private:
  explicit PropertyList(PropertyListNode dictionary) : dictionary_(std::move(dictionary)) {}

  PropertyListNode dictionary_;
};

// One value of the dictionary in the file; absent as objectForKey says, or when the file cannot be read.
MaybeText propertyListValue(const std::string& path, const std::string& key);

// Reads the file, sets one key or, where `value` is absent, removes it, and writes the file back. Silently
// nothing when the file cannot be read: the shipped files must exist, none is made here.
void setPropertyListValue(const std::string& path, const std::string& key, const MaybeText& value);

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
