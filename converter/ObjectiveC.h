// Objective-C as far as the converter knows it: names, types, method signatures.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// Thrown when a unit cannot be converted. The message is a clause that says why, for a comment in the source.
class NotUnderstood : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

namespace known {

// Words within a type that do not affect a call.
bool isQualifier(std::string_view name);

// Classes of Foundation and UIKit that source can name without declaring them.
bool isClass(std::string_view name);

// Whether the headers may use `name` for a type, a function or a macro. Knows the older names one by one and
// the frameworks' names by prefix, so it is also true of many classes.
bool isTaken(std::string_view name);

// Macros that may share their name with a piece of a selector: the source undefines them.
bool isMacro(std::string_view name);

// Names that a piece of a selector cannot have: the compiler reserves them, or the source needs the macro.
bool isReserved(std::string_view name);

}  // namespace known

// The kinds of values that a type takes.
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

struct MethodSignature {
  enum class Of { Instance, Class };

  Of of = Of::Instance;
  ValueType returned;
  std::vector<std::string> names;    // the selector's pieces, each with its colon where it takes an argument
  std::vector<ValueType> arguments;  // one for each name with a colon
  bool isVariadic = false;           // takes more behind them, which cannot be handed on

  // The names joined, such as "itemWithName:count:".
  std::string selector() const;
  // As the source declares it. The arguments are called arg1, arg2 and so on: the names in a list may be
  // anything, words of the language included.
  std::string declaration() const;
  // "arg1, arg2", for handing them on.
  std::string argumentNames() const;
};

std::string argumentName(std::size_t index);

// Also as class dumps print it, with comments. A type that is not written is id. Throws NotUnderstood.
MethodSignature methodSignature(std::string_view text);
