#include "converter/FlexPatches.h"

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
  return {textUnder(value, "class"), textUnder(value, "method"), valueUnder(value, "returns"),
          valueUnder(value, "arguments")};
}

FlexPatch patchOf(const PropertyListValue& value) {
  FlexPatch patch{textUnder(value, "name"), textUnder(value, "application"), {}};
  if (const auto* const units = arrayUnder(value, "units")) {
    for (const PropertyListValue& unit : *units) patch.units.push_back(unitOf(unit));
  }
  return patch;
}

}  // namespace

std::optional<std::vector<FlexPatch>> flexPatches(std::string_view bytes) {
  const auto list = propertyListTree(bytes);
  const auto* const entries = list ? arrayUnder(*list, "patches") : nullptr;
  if (entries == nullptr) return std::nullopt;
  std::vector<FlexPatch> patches;
  for (const PropertyListValue& entry : *entries) {
    if (entry.dictionary() != nullptr) patches.push_back(patchOf(entry));
  }
  return patches;
}
