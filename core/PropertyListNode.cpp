#include "core/PropertyListNode.h"

#include "core/PropertyListBounds.h"

#include <cstdint>

#include <plist/plist.h>

void PropertyListRelease::operator()(void* node) const {
  plist_free(node);
}

PropertyListNode parsedPropertyList(std::string_view bytes) {
  if (!isWithinPropertyListBounds(bytes)) return nullptr;
  plist_t node = nullptr;
  // plist_from_memory would choose by itself, but its parameters differ between versions of the library.
  const auto size = static_cast<std::uint32_t>(bytes.size());
  if (isBinaryPropertyList(bytes)) {
    plist_from_bin(bytes.data(), size, &node);
  } else {
    plist_from_xml(bytes.data(), size, &node);
  }
  return PropertyListNode(node);
}
