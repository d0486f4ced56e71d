// The names that a type or a class may have, as far as the converter knows them: those of the language and
// those that <UIKit/UIKit.h> declares, on its own or with the frameworks that it brings along.
#pragma once

#include <string_view>

namespace known {

// Words within a type that change nothing for a call.
bool isIgnored(std::string_view name);

// Words of C++, Objective-C and their headers that no class can be called.
bool isWordOfLanguage(std::string_view name);

// References to objects of Core Foundation and Core Graphics, such as CGColorRef.
bool isReference(std::string_view name);

// Structures and enumerations that are handed over by value.
bool isPassed(std::string_view name);

// Structures that occur behind pointers only.
bool isPointedTo(std::string_view name);

// The same of Core Audio, which source can name only as "struct NAME", not being declared.
bool isAudioStructure(std::string_view name);

}  // namespace known
