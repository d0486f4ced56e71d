// A patch as Logos source, which Theos turns into Objective-C++.
#pragma once

#include "converter/FlexPatches.h"

#include <cstddef>
#include <string>

struct LogosSource {
  std::string text;
  std::size_t hooked = 0;   // units that the source does
  std::size_t skipped = 0;  // units that it does not do; it says in comments which and why
};

// One %hook for each class, the methods in the patch's order. A unit that is not understood is skipped whole.
LogosSource logosSource(const FlexPatch& patch);
