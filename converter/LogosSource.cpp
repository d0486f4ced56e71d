#include "converter/LogosSource.h"

#include "converter/MethodSignature.h"
#include "converter/NotUnderstood.h"
#include "converter/PlainText.h"
#include "converter/ValueExpression.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>

namespace {

struct Hook {
  std::string className;
  std::set<std::string> identities;
  std::string methods;
};

// Which argument a key ("1" for the first) means.
std::size_t argumentIndex(const std::string& key, const MethodSignature& signature) {
  std::size_t number = 0;
  const char* const last = key.data() + key.size();
  const auto [end, error] = std::from_chars(key.data(), last, number);
  if (error != std::errc() || end != last || number == 0 || number > signature.arguments.size()) {
    throw NotUnderstood("the method has no argument " + key);
  }
  return number - 1;
}

// The statements that set the arguments, in their order.
std::string settingArguments(const PropertyListValue& values, const MethodSignature& signature) {
  const PropertyListValue::Dictionary* const entries = values.dictionary();
  if (entries == nullptr) throw NotUnderstood("its arguments are no dictionary");
  std::map<std::size_t, std::string> statements;
  for (const auto& [key, value] : *entries) {
    const std::size_t index = argumentIndex(key, signature);
    const std::string statement =
        "\t" + argumentName(index) + " = " + valueExpression(value, signature.arguments[index]) + ";\n";
    if (!statements.emplace(index, statement).second) {
      throw NotUnderstood("argument " + std::to_string(index + 1) + " is set twice");
    }
  }
  std::string text;
  for (const auto& [index, statement] : statements) text += statement;
  return text;
}

std::string original(const MethodSignature& signature) {
  return signature.arguments.empty() ? "%orig" : "%orig(" + signature.argumentNames() + ")";
}

std::string body(const FlexUnit& unit, const MethodSignature& signature) {
  const bool givesNothing = signature.returned.kind == ValueKind::Void;
  std::string text;
  if (unit.arguments) text = settingArguments(*unit.arguments, signature);
  const bool setsArguments = !text.empty();
  if (!setsArguments && !unit.returned) throw NotUnderstood("it sets nothing");
  if (givesNothing && unit.returned) {
    if (!isNothing(*unit.returned)) throw NotUnderstood("the method gives no value");
    if (setsArguments) throw NotUnderstood("arguments are set for a method that is not to be called");
    return "\t// The method does nothing any more.\n";
  }
  if (!unit.returned) return text + (givesNothing ? "\t" : "\treturn ") + original(signature) + ";\n";
  if (setsArguments) text += "\t" + original(signature) + ";\n";
  return text + "\treturn " + valueExpression(*unit.returned, signature.returned) + ";\n";
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
        // An empty class or method cannot be told from a missing one, and shows as such.
        const std::string what = unit.className + " " + unit.signature + ": " + reason.what();
        skipped_ += "// Skipped: " + commentText(what) + ".\n";
        ++source_.skipped;
      }
    }
    source_.text = heading();
    for (const Hook& hook : hooks_) {
      source_.text += "\n%hook " + hook.className + "\n" + hook.methods + "\n%end\n";
    }
    return source_;
  }

 private:
  void add(const FlexUnit& unit) {
    if (unit.className.empty()) throw NotUnderstood("no class is named");
    if (!isClassName(unit.className)) throw NotUnderstood("the class name is not understood");
    const MethodSignature signature = methodSignature(unit.signature);
    const std::string method = "\n" + signature.declaration() + " {\n" + body(unit, signature) + "}\n";
    Hook& hook = hookFor(unit.className);
    if (!hook.identities.insert(signature.identity()).second) {
      throw NotUnderstood("an earlier unit has set the method");
    }
    hook.methods += method;
    declare(signature.returned);
    for (const ValueType& type : signature.arguments) declare(type);
  }

  // A class gets its hook with its first unit that is understood.
  Hook& hookFor(const std::string& className) {
    const auto isIt = [&className](const Hook& hook) { return hook.className == className; };
    const auto found = std::find_if(hooks_.begin(), hooks_.end(), isIt);
    if (found != hooks_.end()) return *found;
    return hooks_.emplace_back(Hook{className, {}, {}});
  }

  void declare(const ValueType& type) {
    if (!type.forwardClass.empty()) classes_.insert(type.forwardClass);
  }

  std::string heading() const {
    std::string text = "// " + commentText(patch_.name.empty() ? "Unnamed" : patch_.name) + "\n";
    if (!patch_.application.empty()) {
      text +=
          "// For the application " + commentText(patch_.application) + ": the filter list must name it.\n";
    }
    if (patch_.units.empty()) text += "// The patch holds nothing.\n";
    text += skipped_ + "\n#import <UIKit/UIKit.h>\n";
    if (!classes_.empty()) text += "\n";
    for (const std::string& name : classes_) text += "@class " + name + ";\n";
    return text;
  }

  const FlexPatch& patch_;
  LogosSource source_;
  std::vector<Hook> hooks_;
  std::set<std::string> classes_;
  std::string skipped_;
};

}  // namespace

LogosSource logosSource(const FlexPatch& patch) {
  return SourceWriter(patch).write();
}
