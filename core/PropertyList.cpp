#include "core/PropertyList.h"

#include "core/FileManager.h"
#include "core/PropertyListBounds.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <utility>

#include <plist/plist.h>

namespace {

// XML has no way to write control characters, and the library would write them raw.
bool canStandInXML(std::string_view value) {
  const auto isControl = [](char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
  };
  return isValidUTF8(value) && std::none_of(value.begin(), value.end(), isControl);
}

// A hand-made list may hold a key twice, and the library would then read one of the two and replace the
// other. Here the last one counts.
PropertyListNode withoutRepeatedKeys(const PropertyListNode& dictionary) {
  PropertyListNode unique(plist_new_dict());
  plist_dict_iter start = nullptr;
  plist_dict_new_iter(dictionary.get(), &start);
  const std::unique_ptr<void, decltype(&std::free)> iterator(start, std::free);
  for (;;) {
    char* name = nullptr;
    plist_t item = nullptr;
    plist_dict_next_item(dictionary.get(), iterator.get(), &name, &item);
    const std::unique_ptr<char, decltype(&std::free)> key(name, std::free);
    if (item == nullptr || key == nullptr) return unique;
    plist_dict_set_item(unique.get(), key.get(), plist_copy(item));
  }
}

}  // namespace

std::optional<PropertyList> PropertyList::initWithContentsOfFile(const std::string& path) {
  const MaybeText bytes = contentsOfFile(path, largestPropertyList);
  if (!bytes) return std::nullopt;
  PropertyListNode list = parsedPropertyList(*bytes);
  if (!list || plist_get_node_type(list.get()) != PLIST_DICT) return std::nullopt;
  return PropertyList(withoutRepeatedKeys(list));
}

MaybeText PropertyList::objectForKey(const std::string& key) const {
  const plist_t value = plist_dict_get_item(dictionary_.get(), key.c_str());
  if (value == nullptr || plist_get_node_type(value) != PLIST_STRING) return std::nullopt;
  std::uint64_t length = 0;
  const char* const text = plist_get_string_ptr(value, &length);
  if (text == nullptr || !isValidUTF8({text, length})) return std::nullopt;
  return std::string(text, length);
}

void PropertyList::setObject(const std::string& value, const std::string& key) {
  if (!canStandInXML(value)) return removeObjectForKey(key);
  plist_dict_set_item(dictionary_.get(), key.c_str(), plist_new_string(value.c_str()));
}

void PropertyList::removeObjectForKey(const std::string& key) {
  plist_dict_remove_item(dictionary_.get(), key.c_str());
}

bool PropertyList::writeToFile(const std::string& path) const {
  char* xml = nullptr;
  std::uint32_t size = 0;
  plist_to_xml(dictionary_.get(), &xml, &size);
  const std::unique_ptr<char, decltype(&std::free)> owned(xml, std::free);
  return xml != nullptr && writeToFileAtomically(path, {xml, size});
}

MaybeText propertyListValue(const std::string& path, const std::string& key) {
  const auto list = PropertyList::initWithContentsOfFile(path);
  return list ? list->objectForKey(key) : std::nullopt;
}

void setPropertyListValue(const std::string& path, const std::string& key, const std::string& value) {
  auto list = PropertyList::initWithContentsOfFile(path);
  if (!list) return;
  list->setObject(value, key);
  list->writeToFile(path);
}

void removePropertyListValue(const std::string& path, const std::string& key) {
  auto list = PropertyList::initWithContentsOfFile(path);
  if (!list) return;
  list->removeObjectForKey(key);
  list->writeToFile(path);
}
