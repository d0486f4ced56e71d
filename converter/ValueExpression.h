// Values out of the patch list as expressions of Objective-C.
#pragma once

#include "converter/ValueType.h"
#include "core/PropertyListTree.h"

#include <string>

// The expression that gives `value` as a `type`. Numbers and truth values may also be written as texts, and
// "nil", "NULL", "null" or "(null)" stand for no object. Throws NotUnderstood when the value does not fit the
// type.
std::string valueExpression(const PropertyListValue& value, const ValueType& type);

// Whether `value` is one of the texts that stand for no object.
bool isNothing(const PropertyListValue& value);
