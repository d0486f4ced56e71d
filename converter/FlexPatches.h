// The list of Flex patches on the device (docs/flex-patches.md).
#pragma once

#include "core/PropertyList.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What a patch does to one method. Not validated: any text may be empty, and is if the list lacks it.
struct FlexUnit {
  std::string className;
  std::string signature;
  std::optional<PropertyListValue> returned;   // absent: the method's own result stays
  std::optional<PropertyListValue> arguments;  // absent: none is set
  bool isOn = true;
};

struct FlexPatch {
  std::string name;         // empty when it has none
  std::string application;  // the identifier of the application it is for; empty when not said
  std::vector<FlexUnit> units;
};

// The patches in the property list `bytes` (UTF-8, UTF-16 or binary), in its order. Absent if the bytes are
// not such a list. Patches that are not dictionaries are skipped; a unit that is not one becomes an empty
// unit, so that it is reported.
std::optional<std::vector<FlexPatch>> flexPatches(std::string_view bytes);
