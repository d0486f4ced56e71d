#include "core/PropertyListTree.h"

#include "core/PropertyListNode.h"
#include "core/Text.h"

#include <cstdlib>
#include <memory>

#include <plist/plist.h>

namespace {

template <typename Iterator>
using OwnedIterator = std::unique_ptr<std::remove_pointer_t<Iterator>, decltype(&std::free)>;

// Recursion is as deep as the bounds allow a list to be.
PropertyListValue valueOf(plist_t node);

PropertyListValue::Array arrayOf(plist_t node) {
  PropertyListValue::Array values;
  values.reserve(plist_array_get_size(node));
  plist_array_iter start = nullptr;
  plist_array_new_iter(node, &start);
  const OwnedIterator<plist_array_iter> iterator(start, std::free);
  for (;;) {
    plist_t item = nullptr;
    plist_array_next_item(node, iterator.get(), &item);
    if (item == nullptr) return values;
    values.push_back(valueOf(item));
  }
}

PropertyListValue::Dictionary dictionaryOf(plist_t node) {
  PropertyListValue::Dictionary values;
  plist_dict_iter start = nullptr;
  plist_dict_new_iter(node, &start);
  const OwnedIterator<plist_dict_iter> iterator(start, std::free);
  for (;;) {
    char* name = nullptr;
    plist_t item = nullptr;
    plist_dict_next_item(node, iterator.get(), &name, &item);
    const std::unique_ptr<char, decltype(&std::free)> key(name, std::free);
    if (item == nullptr || key == nullptr) return values;
    if (isValidUTF8(key.get())) values.insert_or_assign(key.get(), valueOf(item));
  }
}

PropertyListValue textOf(plist_t node) {
  std::uint64_t length = 0;
  const char* const text = plist_get_string_ptr(node, &length);
  if (text == nullptr || !isValidUTF8({text, length})) return {};
  return {std::string(text, length)};
}

// The library hands out a negative number and the large one of the same bits alike; only in writing does it
// tell them apart.
bool isNegative(plist_t node) {
  char* text = nullptr;
  std::uint32_t length = 0;
  plist_to_xml(node, &text, &length);
  const std::unique_ptr<char, decltype(&std::free)> written(text, std::free);
  return std::string_view(text, length).find("<integer>-") != std::string_view::npos;
}

PropertyListValue wholeNumberOf(plist_t node) {
  std::uint64_t number = 0;
  plist_get_uint_val(node, &number);
  if (number > INT64_MAX && !isNegative(node)) return {number};
  return {static_cast<std::int64_t>(number)};
}

PropertyListValue valueOf(plist_t node) {
  switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
      std::uint8_t truth = 0;
      plist_get_bool_val(node, &truth);
      return {truth != 0};
    }
    case PLIST_UINT:
      return wholeNumberOf(node);
    case PLIST_REAL: {
      double number = 0;
      plist_get_real_val(node, &number);
      return {number};
    }
    case PLIST_STRING:
      return textOf(node);
    case PLIST_ARRAY:
      return {arrayOf(node)};
    case PLIST_DICT:
      return {dictionaryOf(node)};
    default:
      return {};
  }
}

}  // namespace

const PropertyListValue* PropertyListValue::find(std::string_view key) const {
  const Dictionary* const entries = dictionary();
  if (entries == nullptr) return nullptr;
  const auto found = entries->find(key);
  return found == entries->end() ? nullptr : &found->second;
}

std::optional<PropertyListValue> propertyListTree(std::string_view bytes) {
  const PropertyListNode list = parsedPropertyList(bytes);
  if (!list) return std::nullopt;
  return valueOf(list.get());
}
