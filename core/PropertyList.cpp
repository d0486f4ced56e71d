#include "core/PropertyList.h"

#include "core/FileManager.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

#include <plist/plist.h>

namespace {

struct Release {
  void operator()(void* node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, Release>;

// None when `bytes` are no property list, or beyond the bounds.
Node parsed(std::string_view bytes) {
  if (!isWithinPropertyListBounds(bytes)) return nullptr;
  plist_t node = nullptr;
  // plist_from_memory would choose by itself, but its parameters differ between versions of the library.
  const auto size = static_cast<std::uint32_t>(bytes.size());
  if (isBinaryPropertyList(bytes)) {
    plist_from_bin(bytes.data(), size, &node);
  } else {
    plist_from_xml(bytes.data(), size, &node);
  }
  return Node(node);
}

// XML has no way to write control characters, and the library would write them raw.
bool canStandInXML(std::string_view value) {
  const auto isControl = [](char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
  };
  return isValidUTF8(value) && std::none_of(value.begin(), value.end(), isControl);
}

// Calls visit(key, value) for each entry, in their order.
template <typename Visit>
void forEachEntry(plist_t dictionary, Visit visit) {
  plist_dict_iter start = nullptr;
  plist_dict_new_iter(dictionary, &start);
  const std::unique_ptr<void, decltype(&std::free)> iterator(start, std::free);
  for (;;) {
    char* name = nullptr;
    plist_t item = nullptr;
    plist_dict_next_item(dictionary, iterator.get(), &name, &item);
    const std::unique_ptr<char, decltype(&std::free)> key(name, std::free);
    if (item == nullptr || key == nullptr) return;
    visit(key.get(), item);
  }
}

// Absent for text that is not valid UTF-8, and for any other value.
MaybeText textOf(plist_t node) {
  if (plist_get_node_type(node) != PLIST_STRING) return std::nullopt;
  std::uint64_t length = 0;
  const char* const text = plist_get_string_ptr(node, &length);
  if (text == nullptr || !isValidUTF8({text, length})) return std::nullopt;
  return std::string(text, length);
}

// Recursion is as deep as the bounds allow a list to be.
PropertyListValue valueOf(plist_t node);

PropertyListValue::Array arrayOf(plist_t node) {
  PropertyListValue::Array values(plist_array_get_size(node));
  plist_array_iter start = nullptr;
  plist_array_new_iter(node, &start);
  const std::unique_ptr<void, decltype(&std::free)> iterator(start, std::free);
  // By number, each would be counted from the first.
  for (PropertyListValue& value : values) {
    plist_t item = nullptr;
    plist_array_next_item(node, iterator.get(), &item);
    value = valueOf(item);
  }
  return values;
}

PropertyListValue::Dictionary dictionaryOf(plist_t node) {
  PropertyListValue::Dictionary values;
  forEachEntry(node, [&](const char* key, plist_t value) {
    if (isValidUTF8(key)) values.insert_or_assign(key, valueOf(value));
  });
  return values;
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
      if (auto text = textOf(node)) return {std::move(*text)};
      return {};
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
  const Node list = parsed(bytes);
  if (!list) return std::nullopt;
  return valueOf(list.get());
}

MaybeText propertyListValue(const std::string& path, const std::string& key) {
  const MaybeText bytes = contentsOfFile(path, largestPropertyList);
  const auto list = bytes ? propertyListTree(*bytes) : std::nullopt;
  const PropertyListValue* const value = list ? list->find(key) : nullptr;
  return value && value->text() ? MaybeText(*value->text()) : std::nullopt;
}

bool setPropertyListValue(const std::string& path, const std::string& key, const MaybeText& value) {
  const MaybeText bytes = contentsOfFile(path, largestPropertyList);
  const Node list = bytes ? parsed(*bytes) : nullptr;
  if (!list || plist_get_node_type(list.get()) != PLIST_DICT) return false;
  // A hand-made list may hold a key twice, and the library would then read one of the two and replace the
  // other. Here the last one counts.
  const Node unique(plist_new_dict());
  forEachEntry(list.get(), [&](const char* name, plist_t item) {
    plist_dict_set_item(unique.get(), name, plist_copy(item));
  });
  if (value && canStandInXML(*value)) {
    plist_dict_set_item(unique.get(), key.c_str(), plist_new_string(value->c_str()));
  } else {
    plist_dict_remove_item(unique.get(), key.c_str());
  }
  char* xml = nullptr;
  std::uint32_t size = 0;
  plist_to_xml(unique.get(), &xml, &size);
  const std::unique_ptr<char, decltype(&std::free)> owned(xml, std::free);
  return xml != nullptr && writeToFileAtomically(path, {xml, size});
}
