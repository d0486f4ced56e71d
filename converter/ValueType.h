// The Objective-C types of results and arguments, as far as values can be set for them or handed on.
#pragma once

#include <string>
#include <string_view>

// What values a type takes.
enum class ValueKind {
  Void,
  Boolean,
  Integer,      // bits and sign say which
  Real,         // bits say which
  Text,         // NSString
  MutableText,  // NSMutableString
  Number,       // NSNumber
  AnyObject,    // id, NSObject: a text or a number
  Object,       // any other object, a class, a block: nothing but nil
  Pointer,      // a C pointer: nothing but NULL
  Passed,       // structures and enumerations that the system's headers name: no value, handed on only
};

enum class Sign { Signed, Unsigned };

struct ValueType {
  std::string written;  // as it stands in source
  ValueKind kind = ValueKind::AnyObject;
  unsigned bits = 0;  // of integers and reals
  Sign sign = Sign::Signed;
  // A class that source must declare before it names the type; empty when there is none.
  std::string forwardClass;
};

// Reads the text between a method's parentheses. Words that change nothing for the call (nullability,
// protocols, type arguments, parameter directions) are left out, and a block becomes id. Throws
// NotUnderstood.
ValueType valueType(std::string_view text);

bool isIdentifier(std::string_view text);
// An identifier that is no word of the language.
bool isClassName(std::string_view text);
bool isIdentifierCharacter(char character);
