// Where a Makefile sets THEOS whatever the environment says, as one that was written for one machine does.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace device {

struct FixedTheos {
  // Counted from 1.
  int line;
  // As the Makefile has it, comment and blanks aside.
  std::string place;
};

// The last assignment that always counts. Absent where THEOS is left to the environment ("?="), or is set in
// a conditional, about which nothing can be said.
std::optional<FixedTheos> fixedTheos(std::string_view makefile);

// Whether there may be something at `place` in the device whose var/ is given: also true for what cannot be
// told, such as a relative path or one with variables of make in it.
bool mayBeInDevice(const std::string& place, int var);

}  // namespace device
