#include "converter/LogosSource.h"

#include "converter/PlainText.h"
#include "core/Text.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>

namespace {

struct Hook {
  std::string className;
  std::string name;  // what Logos calls the class, which is the class's own unless a header uses it
  std::set<std::string> identities;
  std::string methods;
};

// Method names with a meaning for Logos or automatic reference counting.
enum class Family {
  None,
  Forbidden,  // the compiler lets nobody name them
  Copying,    // Logos declares the result as the hooked class, whatever it is
  Owned       // the caller releases the result, which Logos does not know of all of them
};

Family familyOf(const MethodSignature& signature) {
  const std::string selector = signature.selector();
  if (isAmong("autorelease release retain retainCount", selector)) return Family::Forbidden;
  if (signature.of == MethodSignature::Of::Instance &&
      isAmong("copy copyWithZone: mutableCopy mutableCopyWithZone:", selector))
    return Family::Copying;
  const std::string name = selector.substr(std::min(selector.find_first_not_of('_'), selector.size()));
  for (const std::string_view word : {"alloc", "copy", "init", "mutableCopy", "new"}) {
    const bool goesOn = name.size() > word.size() && name[word.size()] >= 'a' && name[word.size()] <= 'z';
    if (name.starts_with(word) && !goesOn) return Family::Owned;
  }
  return Family::None;
}

// The argument that a key names ("1" is the first).
std::size_t argumentIndex(const std::string& key, const MethodSignature& signature) {
  std::size_t number = 0;
  const char* const last = key.data() + key.size();
  const auto [end, error] = std::from_chars(key.data(), last, number);
  if (error != std::errc() || end != last || number == 0 || number > signature.arguments.size()) {
    throw NotUnderstood("the method has no argument " + key);
  }
  return number - 1;
}

// The expression of `value`. An unknown `type` becomes known by it: all enumerations, and all pointers, are
// passed alike.
std::string expressionOf(const PropertyListValue& value, ValueType& type) {
  if (type.kind != ValueKind::Word && type.kind != ValueKind::Unknown) return valueExpression(value, type);
  const ValueKind kind = isNothing(value) ? ValueKind::Pointer : ValueKind::Integer;
  std::string expression = valueExpression(value, {type.written, kind, 64});
  type = {kind == ValueKind::Pointer ? "void *" : "NSInteger", kind, 64};
  return expression;
}

// The statements that set the arguments, in their order.
std::string settingArguments(const PropertyListValue& values, MethodSignature& signature) {
  const PropertyListValue::Dictionary* const entries = values.dictionary();
  if (entries == nullptr) throw NotUnderstood("its arguments are no dictionary");
  std::map<std::size_t, std::string> statements;
  for (const auto& [key, value] : *entries) {
    const std::size_t index = argumentIndex(key, signature);
    const std::string statement =
        "\t" + argumentName(index) + " = " + expressionOf(value, signature.arguments[index]) + ";\n";
    if (!statements.emplace(index, statement).second) {
      throw NotUnderstood("argument " + std::to_string(index + 1) + " is set twice");
    }
  }
  std::string text;
  for (const auto& [index, statement] : statements) text += statement;
  return text;
}

std::string returningValue(const PropertyListValue& value, MethodSignature& signature) {
  const std::string expression = expressionOf(value, signature.returned);
  const Family family = familyOf(signature);
  const bool isObject = expression.starts_with('@') || expression.starts_with('[');
  if (!isObject || family == Family::None) return "\treturn " + expression + ";\n";
  if (family == Family::Copying) return "\treturn (id)" + expression + ";\n";
  signature.returned = {"void *", ValueKind::Pointer};
  return "\treturn (__bridge_retained void *)" + expression + ";\n";
}

bool isKnown(const ValueType& type) {
  return type.kind < ValueKind::Unknown;
}

std::string original(const MethodSignature& signature) {
  if (signature.isVariadic) throw NotUnderstood("it takes a number of arguments that is not known");
  std::vector<ValueType> types = signature.arguments;
  types.push_back(signature.returned);
  const auto unknown = std::find_if_not(types.begin(), types.end(), isKnown);
  if (unknown != types.end()) throw NotUnderstood("the type " + unknown->written + " is not understood");
  return signature.arguments.empty() ? "%orig" : "%orig(" + signature.argumentNames() + ")";
}

// Derives the unknown types of `signature` from the values.
std::string body(const FlexUnit& unit, MethodSignature& signature) {
  const bool givesNothing = signature.returned.kind == ValueKind::Void;
  std::string text;
  if (unit.arguments) text = settingArguments(*unit.arguments, signature);
  const bool setsArguments = !text.empty();
  if (!setsArguments && !unit.returned) throw NotUnderstood("it sets nothing");
  if (givesNothing && unit.returned) {
    if (!isNothing(*unit.returned)) throw NotUnderstood("the method gives no value");
    if (setsArguments) throw NotUnderstood("arguments are set for a method that is not to be called");
    text = "\t// The method does nothing any more.\n";
  }
  const std::string returning =
      unit.returned && !givesNothing ? returningValue(*unit.returned, signature) : "";
  if (setsArguments) {
    text += (givesNothing || unit.returned ? "\t" : "\treturn ") + original(signature) + ";\n";
  } else {
    // After an argument of unknown type, the place of the others is unknown. None is used, so void * will do.
    const auto first = std::find_if_not(signature.arguments.begin(), signature.arguments.end(), isKnown);
    std::fill(first, signature.arguments.end(), ValueType{"void *", ValueKind::Pointer});
  }
  return text + returning;
}

class SourceWriter {
 public:
  explicit SourceWriter(const FlexPatch& patch) : patch_(patch) {}

  LogosSource write() {
    for (const FlexUnit& unit : patch_.units) {
      try {
        add(unit);
        ++source_.hooked;
      } catch (const NotUnderstood& reason) {
        // An empty class or method is reported as missing.
        const std::string what = unit.className + " " + unit.signature + ": " + reason.what();
        skipped_ += "// Skipped: " + commentText(what) + ".\n";
        ++source_.skipped;
      }
    }
    source_.text = heading();
    std::string classes;
    for (const Hook& hook : hooks_) {
      source_.text += "\n%hook " + hook.name + "\n" + hook.methods + "\n%end\n";
      if (hook.name == hook.className) continue;
      classes += (classes.empty() ? "" : ", ") + hook.name + " = objc_getClass(\"" + hook.className + "\")";
    }
    if (!classes.empty()) source_.text += "\n%ctor {\n\t%init(" + classes + ");\n}\n";
    return source_;
  }

 private:
  void add(const FlexUnit& unit) {
    if (!unit.isOn) throw NotUnderstood("it is switched off");
    if (unit.className.empty()) throw NotUnderstood("no class is named");
    if (!isClassName(unit.className)) throw NotUnderstood("the class name is not understood");
    MethodSignature signature = methodSignature(unit.signature);
    const std::string statements = body(unit, signature);
    const Family family = familyOf(signature);
    const bool isObject =
        signature.returned.kind >= ValueKind::Text && signature.returned.kind <= ValueKind::Object;
    if (family == Family::Forbidden || (family == Family::Copying && !isObject))
      throw NotUnderstood("automatic reference counting does not let the method be hooked");
    Hook& hook = hookFor(unit.className);
    // The prefix of the functions that Logos makes.
    const std::string identity =
        (signature.of == MethodSignature::Of::Class ? '+' : '-') + replaceAll(signature.selector(), ":", "$");
    if (!hook.identities.insert(identity).second) throw NotUnderstood("an earlier unit has set the method");
    hook.methods += "\n" + signature.declaration() + " {\n" + statements + "}\n";
    for (std::string name : signature.names) {
      if (name.ends_with(':')) name.pop_back();
      if (known::isMacro(name)) macros_.insert(name);
    }
  }

  // Identifiers, joined by dots for a Swift class with its module.
  static bool isClassName(std::string_view name) {
    const std::size_t dot = std::min(name.find('.'), name.size());
    return isIdentifier(name.substr(0, dot)) && (dot == name.size() || isClassName(name.substr(dot + 1)));
  }

  // The first convertible unit of a class opens its hook.
  Hook& hookFor(const std::string& className) {
    const auto isIt = [&className](const Hook& hook) { return hook.className == className; };
    const auto found = std::find_if(hooks_.begin(), hooks_.end(), isIt);
    if (found != hooks_.end()) return *found;
    const bool isOwn = isIdentifier(className) && !known::isTaken(className);
    return hooks_.emplace_back(
        Hook{className, isOwn ? className : "Hooked" + std::to_string(hooks_.size() + 1), {}, {}});
  }

  std::string heading() const {
    std::string text = "// " + commentText(patch_.name.empty() ? "Unnamed" : patch_.name) + "\n";
    if (!patch_.application.empty()) {
      text +=
          "// For the application " + commentText(patch_.application) + ": the filter list must name it.\n";
    }
    if (patch_.units.empty()) text += "// The patch holds nothing.\n";
    if (!hooks_.empty()) {
      text +=
          "// To build it, rename the file so that it ends in .x or .xm. A Makefile that lists its sources\n"
          "// instead of taking every one beside it has to list the file.\n";
    }
    text += skipped_ + "\n#import <UIKit/UIKit.h>\n";
    if (!macros_.empty()) text += "\n// Macros of these names would change the methods' names.\n";
    for (const std::string& name : macros_) text += "#undef " + name + "\n";
    return text;
  }

  const FlexPatch& patch_;
  LogosSource source_;
  std::vector<Hook> hooks_;
  std::set<std::string> macros_;
  std::string skipped_;
};

}  // namespace

LogosSource logosSource(const FlexPatch& patch) {
  return SourceWriter(patch).write();
}
