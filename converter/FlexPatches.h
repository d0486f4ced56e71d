// The Flex app's patches as they lie on the device (docs/flex-patches.md).
#pragma once

#include "core/PropertyList.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What a patch does to one method. Nothing is checked yet: every text may be empty, as a missing one is.
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

// The patches in the property list `bytes`, which may be UTF-16, in its order. Absent when the bytes are no
// such list. What is no dictionary among the patches is passed over; a unit that is none comes as an empty
// unit, so that it is not lost silently.
std::optional<std::vector<FlexPatch>> flexPatches(std::string_view bytes);
