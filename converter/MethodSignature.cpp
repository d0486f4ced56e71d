#include "converter/MethodSignature.h"

#include "converter/NotUnderstood.h"

namespace {

// Whether every argument has a name of its own. "a:(int)b:(int)c" has two meanings otherwise.
enum class ArgumentNames { Given, Optional };

class SignatureReader {
 public:
  SignatureReader(std::string_view text, ArgumentNames names) : text_(text), names_(names) {}

  MethodSignature read() {
    MethodSignature signature;
    if (take('+')) {
      signature.of = MethodSignature::Of::Class;
    } else if (!take('-')) {
      giveUp();
    }
    signature.returned = type();
    std::string name = identifier();
    if (name.empty()) giveUp();
    if (!take(':')) {
      signature.names.push_back(name);
      end();
      return signature;
    }
    do {
      signature.names.push_back(name + ":");
      signature.arguments.push_back(type());
      if (signature.arguments.back().kind == ValueKind::Void) giveUp();
    } while (takeNextPiece(name));
    end();
    return signature;
  }

 private:
  [[noreturn]] static void giveUp() { throw NotUnderstood("the method is not understood"); }

  void skipBlanks() {
    while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t')) ++at_;
  }

  bool take(char character) {
    skipBlanks();
    if (at_ == text_.size() || text_[at_] != character) return false;
    ++at_;
    return true;
  }

  // Reads an argument's own name, and into `piece` what stands before the next argument's colon, which may be
  // nothing. False where no argument follows.
  bool takeNextPiece(std::string& piece) {
    const std::string own = identifier();
    if (names_ == ArgumentNames::Given && own.empty()) giveUp();
    if (names_ == ArgumentNames::Optional && take(':')) {
      piece = own;
      return true;
    }
    piece = identifier();
    if (take(':')) return true;
    if (!piece.empty()) giveUp();
    return false;
  }

  // Empty when there is none here.
  std::string identifier() {
    skipBlanks();
    const std::size_t start = at_;
    while (at_ < text_.size() && isIdentifierCharacter(text_[at_])) ++at_;
    const std::string_view name = text_.substr(start, at_ - start);
    if (!name.empty() && !isIdentifier(name)) giveUp();
    return std::string(name);
  }

  ValueType type() {
    if (!take('(')) return valueType("id");
    const std::size_t start = at_;
    for (int depth = 1; at_ < text_.size(); ++at_) {
      if (text_[at_] == '(') ++depth;
      if (text_[at_] == ')' && --depth == 0) return valueType(text_.substr(start, at_++ - start));
    }
    giveUp();
  }

  void end() {
    take(';');
    skipBlanks();
    if (at_ != text_.size()) giveUp();
  }

  std::string_view text_;
  ArgumentNames names_;
  std::size_t at_ = 0;
};

}  // namespace

std::string argumentName(std::size_t index) {
  return "arg" + std::to_string(index + 1);
}

std::string MethodSignature::identity() const {
  std::string text = of == Of::Class ? "+" : "-";
  for (const std::string& name : names) text += name;
  return text;
}

std::string MethodSignature::declaration() const {
  std::string text = std::string(of == Of::Class ? "+" : "-") + " (" + returned.written + ")" + names.front();
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    if (index != 0) text += " " + names[index];
    text += "(" + arguments[index].written + ")" + argumentName(index);
  }
  return text;
}

std::string MethodSignature::argumentNames() const {
  std::string text;
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    text += (index == 0 ? "" : ", ") + argumentName(index);
  }
  return text;
}

MethodSignature methodSignature(std::string_view text) {
  try {
    return SignatureReader(text, ArgumentNames::Given).read();
  } catch (const NotUnderstood&) {
    return SignatureReader(text, ArgumentNames::Optional).read();
  }
}
