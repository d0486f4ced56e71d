#include "converter/ObjectiveC.h"

#include <algorithm>

namespace {

// Class dumps name the real type in comments: "id /* block */", "/*^block*/id".
std::string withoutComments(std::string_view text) {
  std::string kept;
  while (true) {
    const std::size_t start = std::min(text.find("/*"), text.find("//"));
    kept += text.substr(0, start);
    if (start == std::string_view::npos) return kept;
    const std::string_view ending = text[start + 1] == '*' ? "*/" : "\n";
    const std::size_t end = text.find(ending, start + 2);
    const bool isBlock = text.substr(start, end - start).find("block") != std::string_view::npos;
    kept += isBlock && ending == "*/" ? " ^ " : " ";
    if (end == std::string_view::npos) return kept;
    text.remove_prefix(end + ending.size());
  }
}

// Whether every argument has its own name; otherwise "a:(int)b:(int)c" is ambiguous.
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
    if (take(',')) {
      for (int dots = 0; dots < 3; ++dots) {
        if (!take('.')) giveUp();
      }
      signature.isVariadic = true;
    }
    end();
    return signature;
  }

 private:
  [[noreturn]] static void giveUp() { throw NotUnderstood("the method is not understood"); }

  void skipBlanks() {
    while (at_ < text_.size() && std::string_view(" \t\r\n").find(text_[at_]) != std::string_view::npos)
      ++at_;
  }

  bool take(char character) {
    skipBlanks();
    if (at_ == text_.size() || text_[at_] != character) return false;
    ++at_;
    return true;
  }

  // Reads an argument's own name, and into `piece` the text before the next argument's colon, maybe empty.
  // False if no argument follows.
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

  // Empty if there is none here.
  std::string identifier() {
    skipBlanks();
    const std::size_t start = at_;
    while (at_ < text_.size() && isIdentifierCharacter(text_[at_])) ++at_;
    const std::string_view name = text_.substr(start, at_ - start);
    if (!name.empty() && (!isIdentifier(name) || known::isReserved(name))) giveUp();
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

std::string MethodSignature::selector() const {
  std::string text;
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
  const std::string plain = withoutComments(text);
  try {
    return SignatureReader(plain, ArgumentNames::Given).read();
  } catch (const NotUnderstood&) {
    return SignatureReader(plain, ArgumentNames::Optional).read();
  }
}
