// A method as a patch names it, such as "+ (id)itemWithName:(NSString *)name count:(int)count".
#pragma once

#include "converter/ValueType.h"

#include <string>
#include <string_view>
#include <vector>

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
