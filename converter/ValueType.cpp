#include "converter/ValueType.h"

#include "converter/KnownNames.h"
#include "converter/NotUnderstood.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace {

using Words = std::vector<std::string>;

struct ScalarName {
  std::string_view name;
  ValueKind kind;
  unsigned bits;
  Sign sign = Sign::Signed;
};

// Sizes are those of a 64-bit phone.
constexpr std::array<ScalarName, 48> scalarNames{{
    {"BOOL", ValueKind::Boolean, 8},
    {"bool", ValueKind::Boolean, 8},
    {"_Bool", ValueKind::Boolean, 8},
    {"Boolean", ValueKind::Boolean, 8},
    {"boolean_t", ValueKind::Boolean, 32},
    {"NSInteger", ValueKind::Integer, 64},
    {"NSUInteger", ValueKind::Integer, 64, Sign::Unsigned},
    {"CFIndex", ValueKind::Integer, 64},
    {"int8_t", ValueKind::Integer, 8},
    {"int16_t", ValueKind::Integer, 16},
    {"int32_t", ValueKind::Integer, 32},
    {"int64_t", ValueKind::Integer, 64},
    {"uint8_t", ValueKind::Integer, 8, Sign::Unsigned},
    {"uint16_t", ValueKind::Integer, 16, Sign::Unsigned},
    {"uint32_t", ValueKind::Integer, 32, Sign::Unsigned},
    {"uint64_t", ValueKind::Integer, 64, Sign::Unsigned},
    {"SInt8", ValueKind::Integer, 8},
    {"SInt16", ValueKind::Integer, 16},
    {"SInt32", ValueKind::Integer, 32},
    {"SInt64", ValueKind::Integer, 64},
    {"UInt8", ValueKind::Integer, 8, Sign::Unsigned},
    {"UInt16", ValueKind::Integer, 16, Sign::Unsigned},
    {"UInt32", ValueKind::Integer, 32, Sign::Unsigned},
    {"UInt64", ValueKind::Integer, 64, Sign::Unsigned},
    {"size_t", ValueKind::Integer, 64, Sign::Unsigned},
    {"ssize_t", ValueKind::Integer, 64},
    {"time_t", ValueKind::Integer, 64},
    {"intptr_t", ValueKind::Integer, 64},
    {"uintptr_t", ValueKind::Integer, 64, Sign::Unsigned},
    {"unichar", ValueKind::Integer, 16, Sign::Unsigned},
    {"Byte", ValueKind::Integer, 8, Sign::Unsigned},
    {"UniChar", ValueKind::Integer, 16, Sign::Unsigned},
    {"OSStatus", ValueKind::Integer, 32},
    {"OSType", ValueKind::Integer, 32, Sign::Unsigned},
    {"FourCharCode", ValueKind::Integer, 32, Sign::Unsigned},
    {"Float32", ValueKind::Real, 32},
    {"Float64", ValueKind::Real, 64},
    {"float", ValueKind::Real, 32},
    {"double", ValueKind::Real, 64},
    {"CGFloat", ValueKind::Real, 64},
    {"NSTimeInterval", ValueKind::Real, 64},
    {"CFTimeInterval", ValueKind::Real, 64},
    {"CFAbsoluteTime", ValueKind::Real, 64},
    {"void", ValueKind::Void, 0},
    {"id", ValueKind::AnyObject, 0},
    {"Class", ValueKind::Object, 0},
    {"SEL", ValueKind::Pointer, 0},
    {"IMP", ValueKind::Pointer, 0},
}};

const ScalarName* scalarNamed(std::string_view name) {
  const auto isIt = [name](const ScalarName& scalar) { return scalar.name == name; };
  const auto* const found = std::find_if(scalarNames.begin(), scalarNames.end(), isIt);
  return found == scalarNames.end() ? nullptr : found;
}

[[noreturn]] void giveUp(std::string_view text) {
  throw NotUnderstood("the type " + std::string(text) + " is not understood");
}

// What stands between angle brackets names protocols and type arguments, which make no difference for a call.
std::string withoutAngles(std::string_view text) {
  std::string kept;
  int depth = 0;
  for (const char character : text) {
    if (character == '<') ++depth;
    if (depth == 0) kept += character;
    if (character == '>' && --depth < 0) giveUp(text);
  }
  if (depth != 0) giveUp(text);
  return kept;
}

struct Pieces {
  Words words;
  bool isConstant = false;  // what is pointed to
  std::size_t stars = 0;
};

Pieces piecesOf(std::string_view text) {
  Pieces pieces;
  const std::string plain = withoutAngles(text);
  for (std::size_t at = 0; at < plain.size();) {
    if (plain[at] == ' ' || plain[at] == '\t') {
      ++at;
    } else if (plain[at] == '*') {
      ++pieces.stars;
      ++at;
    } else {
      std::size_t end = at;
      while (end < plain.size() && isIdentifierCharacter(plain[end])) ++end;
      const std::string word = plain.substr(at, end - at);
      if (!isIdentifier(word)) giveUp(text);
      if (word == "const" && pieces.stars == 0) pieces.isConstant = true;
      if (!known::isIgnored(word)) {
        if (pieces.stars != 0) giveUp(text);
        pieces.words.push_back(word);
      }
      at = end;
    }
  }
  return pieces;
}

std::string joinedWords(const Words& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

// char, short, int and long in their combinations; absent when the words are something else.
std::optional<ValueType> basicInteger(const Words& words) {
  const auto count = [&words](std::string_view word) { return std::count(words.begin(), words.end(), word); };
  const auto chars = count("char");
  const auto shorts = count("short");
  const auto longs = count("long");
  const auto ints = count("int");
  const auto signs = count("signed") + count("unsigned");
  if (words.empty() || chars + shorts + longs + ints + signs != static_cast<std::ptrdiff_t>(words.size()))
    return {};
  if (chars > 1 || shorts > 1 || longs > 2 || ints > 1 || signs > 1) return {};
  if ((chars != 0) + (shorts != 0) + (longs != 0) > 1 || (chars != 0 && ints != 0)) return {};
  ValueType type;
  type.kind = ValueKind::Integer;
  type.written = joinedWords(words);
  type.bits = chars != 0 ? 8 : shorts != 0 ? 16 : longs != 0 ? 64 : 32;
  type.sign = count("unsigned") != 0 ? Sign::Unsigned : Sign::Signed;
  return type;
}

std::optional<ValueType> scalar(const Words& words) {
  if (auto integer = basicInteger(words)) return integer;
  if (words.size() != 1) return {};
  const std::string& name = words.front();
  ValueType type;
  if (name == "instancetype") {
    type.written = "id";  // a hook becomes a plain function, which knows no other
    return type;
  }
  if (const ScalarName* const known = scalarNamed(name)) {
    type = {name == "_Bool" ? "bool" : name, known->kind, known->bits, known->sign, {}};
    return type;
  }
  const bool isReference = known::isReference(name);
  if (!isReference && !known::isPassed(name)) return {};
  type.kind = isReference ? ValueKind::Pointer : ValueKind::Passed;
  type.written = name;
  return type;
}

ValueKind kindOfObject(const std::string& name) {
  if (name == "NSString") return ValueKind::Text;
  if (name == "NSMutableString") return ValueKind::MutableText;
  if (name == "NSNumber") return ValueKind::Number;
  return name == "NSObject" ? ValueKind::AnyObject : ValueKind::Object;
}

ValueType pointer(const Pieces& pieces, std::string_view text) {
  ValueType type;
  type.written =
      (pieces.isConstant ? "const " : "") + joinedWords(pieces.words) + " " + std::string(pieces.stars, '*');
  type.kind = ValueKind::Pointer;
  const bool isStructure = pieces.words.size() == 2 && pieces.words.front() == "struct";
  if (isStructure && !isClassName(pieces.words.back())) giveUp(text);
  if (isStructure || scalar(pieces.words)) return type;
  if (pieces.words.size() != 1) giveUp(text);
  const std::string& name = pieces.words.front();
  if (known::isPointedTo(name)) return type;
  if (known::isAudioStructure(name)) {
    type.written.insert(pieces.isConstant ? std::string_view("const ").size() : 0, "struct ");
    return type;
  }
  // Any other name is taken for a class, unless it is one of the C frameworks or not written as classes are
  // (a structure): to declare those as classes would not compile.
  const bool isLower = name.front() >= 'a' && name.front() <= 'z';
  if (isLower || !isClassName(name) || name.starts_with("CG") || name.starts_with("CF")) giveUp(text);
  if (pieces.stars == 1) type.kind = kindOfObject(name);
  if (pieces.stars > 1 || type.kind == ValueKind::Object) type.forwardClass = name;
  return type;
}

}  // namespace

bool isIdentifierCharacter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || character == '_' || character == '$';
}

bool isIdentifier(std::string_view text) {
  if (text.empty() || (text.front() >= '0' && text.front() <= '9')) return false;
  return std::all_of(text.begin(), text.end(), isIdentifierCharacter);
}

bool isClassName(std::string_view text) {
  return isIdentifier(text) && !known::isWordOfLanguage(text);
}

ValueType valueType(std::string_view text) {
  if (text.find('^') != std::string_view::npos) return {"id", ValueKind::Object, 0, Sign::Signed, {}};
  Pieces pieces = piecesOf(text);
  if (pieces.stars != 0 && !pieces.words.empty()) return pointer(pieces, text);
  // "struct CGRect" and "CGRect" are the same; a structure that no header names is not known well enough to
  // be handed on.
  if (pieces.words.size() == 2 && pieces.words.front() == "struct") pieces.words.erase(pieces.words.begin());
  auto type = scalar(pieces.words);
  if (!type) giveUp(text);
  return *type;
}
