// Property lists in their binary form.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>

#include <plist/plist.h>

// The property list `xml` as binary.
inline std::string binaryPropertyList(const std::string& xml) {
  plist_t node = nullptr;
  plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &node);
  char* bytes = nullptr;
  std::uint32_t size = 0;
  plist_to_bin(node, &bytes, &size);
  plist_free(node);
  const std::string list(bytes, size);
  std::free(bytes);
  return list;
}
