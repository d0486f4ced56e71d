// The library's tree of a property list, with an owner; for the readers in this room.
#pragma once

#include <memory>
#include <string_view>

struct PropertyListRelease {
  void operator()(void* node) const;
};
using PropertyListNode = std::unique_ptr<void, PropertyListRelease>;

// Reads XML or binary. None when `bytes` are no property list, or too large or too deep for one
// (PropertyListBounds.h).
PropertyListNode parsedPropertyList(std::string_view bytes);
