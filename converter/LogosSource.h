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

// One %hook for each class, the methods in the patch's order. Skips units that cannot be converted, with a
// comment that says why.
LogosSource logosSource(const FlexPatch& patch);

// `value` as an expression of `type`. Numbers, truth values and structures may also be texts, as people write
// them; "nil", "Nil", "NULL", "null", "(null)" and, for pointers, 0 are nil. Throws NotUnderstood if the
// value does not fit the type.
std::string valueExpression(const PropertyListValue& value, const ValueType& type);

// Whether `value` is one of the texts for nil.
bool isNothing(const PropertyListValue& value);

// `value` as yes or no; absent if it is neither.
std::optional<bool> truth(const PropertyListValue& value);
