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
  Enumeration,  // that a header declares
  Structure,    // that a header declares
  Text,         // NSString
  MutableText,  // NSMutableString
  Number,       // NSNumber
  AnyObject,    // id, NSObject: a text or a number
  Object,       // any other object, a class, a block: nothing but nil
  Pointer,      // a C pointer: nothing but NULL
  Word,         // of a kind not known, but in one general register: an enumeration, an object, a pointer
  Unknown,      // perhaps an enumeration or a pointer, perhaps a structure
  Opaque,       // a structure or union that is not known
};

enum class Sign { Signed, Unsigned };

struct ValueType {
  std::string written;  // as it is in source; of Unknown and Opaque, as it is in the list
  ValueKind kind = ValueKind::AnyObject;
  unsigned bits = 0;  // of integers, enumerations and reals
  Sign sign = Sign::Signed;
};

// Reads the text between a method's parentheses, also as class dumps print it. Words that change nothing for
// the call (nullability, protocols, type arguments, parameter directions) are left out, a block becomes id,
// and so does a class that source cannot name without declaring it. Whatever else is behind a pointer becomes
// void *, which counts no references.
ValueType valueType(std::string_view text);

bool isIdentifier(std::string_view text);
bool isIdentifierCharacter(char character);
