// A patch as Logos source, which Theos turns into Objective-C++, and its values as expressions.
#pragma once

#include "converter/FlexPatches.h"
#include "converter/ObjectiveC.h"
#include "core/PropertyList.h"

#include <cstddef>
#include <optional>
#include <string>

struct LogosSource {
  std::string text;
  std::size_t hooked = 0;   // units that the source does
  std::size_t skipped = 0;  // units that it does not do; it says in comments which and why
};

// One %hook for each class, the methods in the patch's order. A unit that is not understood is skipped whole.
LogosSource logosSource(const FlexPatch& patch);

// The expression that gives `value` as a `type`. Numbers, truth values and structures may also be texts, as
// people write them; "nil", "Nil", "NULL", "null" or "(null)", and for pointers 0, stand for no object.
// Throws NotUnderstood when the value does not fit the type.
std::string valueExpression(const PropertyListValue& value, const ValueType& type);

// Whether `value` is one of the texts that stand for no object.
bool isNothing(const PropertyListValue& value);

// What `value` means as an answer to a yes-or-no question; absent when it is none.
std::optional<bool> truth(const PropertyListValue& value);
