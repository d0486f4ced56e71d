// Names that the language and the headers below <UIKit/UIKit.h> use already.
#pragma once

#include <string_view>

namespace known {

// Whether `name` is one of `names`, which single blanks separate.
bool isAmong(std::string_view names, std::string_view name);

// Words within a type that change nothing for a call.
bool isQualifier(std::string_view name);

// Classes of Foundation and UIKit that source can name without declaring them.
bool isClass(std::string_view name);

// Whether the headers may use `name` for something that is no class: a type, a function, a macro. Knows the
// older names one by one and those of the frameworks by their prefixes, so it also says so of many a class.
bool isTaken(std::string_view name);

// Macros that a piece of a selector may be called like, and that the source must therefore do without.
bool isMacro(std::string_view name);

// Words that no piece of a selector can be called: the compiler takes them for something else wherever they
// are, or the source needs the macro.
bool isReserved(std::string_view name);

}  // namespace known
