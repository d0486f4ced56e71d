// Values out of the patch list as expressions of Objective-C.
#pragma once

#include "converter/ValueType.h"
#include "core/PropertyListTree.h"

#include <optional>
#include <string>

// The expression that gives `value` as a `type`. Numbers, truth values and structures may also be texts, as
// people write them; "nil", "Nil", "NULL", "null" or "(null)", and for pointers 0, stand for no object.
// Throws NotUnderstood when the value does not fit the type.
std::string valueExpression(const PropertyListValue& value, const ValueType& type);

// Whether `value` is one of the texts that stand for no object.
bool isNothing(const PropertyListValue& value);

// What `value` means as an answer to a yes-or-no question; absent when it is none.
std::optional<bool> truth(const PropertyListValue& value);
