#include "ui/controls/CodeColours.h"

#include "core/Text.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>

namespace {

constexpr std::string_view logosEndings = "x xm xi xmi m mm h hh hpp c cc cpp cxx pch inc swift";
constexpr std::string_view xmlEndings = "plist xml xib storyboard strings html entitlements svg";
constexpr std::string_view shellNames = "preinst postinst prerm postrm sh extrainst_ bash command";
constexpr std::string_view keywords =
    "BOOL Class FALSE IMP NO NULL Nil SEL TRUE YES __block __strong __unused __weak alignas assign "
    "atomic auto bool break case catch char class concept const constexpr continue copy decltype "
    "default delete do double else enum explicit extern false final float for friend goto id if inline "
    "instancetype int long mutable namespace new nil noexcept nonatomic nullptr operator override "
    "private protected public readonly register retain return self short signed sizeof static strong "
    "struct super switch template this throw true try typedef union unsigned void while";
constexpr std::string_view logosWords =
    "hook end orig new group init ctor dtor c log class config subclass property hookf";

bool isWordStart(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  return code >= 0x80 || std::isalpha(code) != 0 || byte == '_' || byte == '$';
}

bool isWordByte(char byte) {
  return isWordStart(byte) || std::isdigit(static_cast<unsigned char>(byte)) != 0;
}

// The state between lines: flags, and above them the number of open brackets of messages.
constexpr int inComment = 1;
constexpr int inDeclaration = 2;  // of a method, up to its body
constexpr int nameSeen = 4;       // in a declaration
constexpr int continued = 8;      // a literal, whose quote is in the bit below
constexpr int singleQuote = 16;
constexpr int oneBracket = 32;
constexpr int mostBrackets = 1000 * oneBracket;

// One line on its way through.
class LogosLine {
 public:
  LogosLine(std::string_view line, int state, char* parts) : line_(line), state_(state), parts_(parts) {
    std::memset(parts, 0, line.size());
    first_ = std::min(line.find_first_not_of(" \t"), line.size());
  }

  int style() {
    if ((state_ & continued) != 0) literal(0, (state_ & singleQuote) != 0 ? '\'' : '"');
    while (at_ < line_.size()) {
      if ((state_ & inComment) != 0) {
        comment();
      } else {
        next();
      }
    }
    return state_;
  }

 private:
  char peek(std::size_t offset = 0) const { return at_ + offset < line_.size() ? line_[at_ + offset] : '\0'; }
  void paint(std::size_t end, CodePart part) {
    end = std::clamp(end, at_, line_.size());
    std::memset(parts_ + at_, static_cast<int>(part), end - at_);
    at_ = end;
  }
  std::size_t endOfWord(std::size_t from) const {
    while (from < line_.size() && isWordByte(line_[from])) ++from;
    return from;
  }

  void comment() {
    const std::size_t end = line_.find("*/", at_);
    if (end != std::string_view::npos) state_ &= ~inComment;
    paint(end == std::string_view::npos ? line_.size() : end + 2, CodePart::Comment);
  }

  // From behind the opening quote, `opening` bytes on. Ends with the line, unless that ends with a backslash.
  void literal(std::size_t opening, char quote) {
    std::size_t end = at_ + opening;
    state_ &= ~(continued | singleQuote);
    for (; end < line_.size() && line_[end] != quote; ++end) {
      if (line_[end] == '\n' || line_[end] == '\r') break;
      if (line_[end] != '\\') continue;
      ++end;
      if (end < line_.size() && (line_[end] == '\n' || line_[end] == '\r'))
        state_ |= continued | (quote == '\'' ? singleQuote : 0);
    }
    if ((state_ & continued) != 0) end = line_.size();
    paint(end + 1, CodePart::Literal);
  }

  void number() {
    std::size_t end = at_;
    while (end < line_.size() &&
           (isWordByte(line_[end]) || line_[end] == '.' ||
            (line_[end] == '\'' && end + 1 < line_.size() && isWordByte(line_[end + 1]))))
      ++end;
    paint(end, CodePart::Literal);
  }

  void preprocessor() {
    const std::size_t word = line_.find_first_not_of(" \t", at_ + 1);
    const std::size_t end = word == std::string_view::npos ? at_ + 1 : endOfWord(word);
    const std::string_view name = line_.substr(std::min(word, end), end - std::min(word, end));
    paint(std::max(end, at_ + 1), CodePart::Directive);
    if (name != "import" && name != "include") return;
    const std::size_t open = line_.find_first_not_of(" \t", at_);
    if (open == std::string_view::npos || line_[open] != '<') return;
    at_ = open;
    const std::size_t close = line_.find_first_of(">\r\n", open);
    paint(close == std::string_view::npos ? line_.size() : close + 1, CodePart::Literal);
  }

  void word() {
    const std::size_t end = endOfWord(at_);
    const std::string_view text = line_.substr(at_, end - at_);
    const bool colon = end < line_.size() && line_[end] == ':' && line_.substr(end, 2) != "::";
    const bool declares = (state_ & inDeclaration) != 0 && parentheses_ == 0;
    if (declares && (colon || (state_ & nameSeen) == 0)) {
      state_ |= nameSeen;
      return paint(end, CodePart::Name);
    }
    if (colon && (state_ >= oneBracket || selectorAt_ == parentheses_)) return paint(end, CodePart::Name);
    const bool known = isAmong(keywords, text);
    paint(end, known ? CodePart::Keyword : CodePart::Plain);
  }

  void next() {
    const char byte = peek();
    const char after = peek(1);
    if (byte == '/' && after == '/') return paint(line_.size(), CodePart::Comment);
    if (byte == '/' && after == '*') {
      state_ |= inComment;
      return paint(at_ + 2, CodePart::Comment);
    }
    if (byte == '"' || byte == '\'') return literal(1, byte);
    if (byte == '@' && after == '"') return literal(2, after);
    if (byte == '@' && isWordStart(after)) {
      const std::size_t end = endOfWord(at_ + 1);
      if (line_.substr(at_ + 1, end - at_ - 1) == "selector") selectorAt_ = parentheses_ + 1;
      return paint(end, CodePart::Keyword);
    }
    if (byte == '%' && isWordStart(after)) {
      const std::size_t end = endOfWord(at_ + 1);
      const bool known = isAmong(logosWords, line_.substr(at_ + 1, end - at_ - 1));
      // A hook begins afresh, whatever the lines above left open.
      if (known && at_ == first_) state_ = 0;
      return paint(known ? end : at_ + 1, known ? CodePart::Directive : CodePart::Plain);
    }
    if (byte == '#' && at_ == first_) return preprocessor();
    if (std::isdigit(static_cast<unsigned char>(byte)) != 0) return number();
    if (isWordStart(byte)) return word();
    punctuation(byte);
    ++at_;
  }

  void punctuation(char byte) {
    if (byte == ')' && selectorAt_ == parentheses_) selectorAt_ = -1;
    if (byte == '(') ++parentheses_;
    if (byte == ')') --parentheses_;
    if (byte == '[' && state_ < mostBrackets) state_ += oneBracket;
    if (byte == ']' && state_ >= oneBracket) state_ -= oneBracket;
    if (byte == '{' || byte == ';') state_ &= ~(inDeclaration | nameSeen);
    if ((byte != '-' && byte != '+') || at_ != first_) return;
    const std::size_t type = line_.find_first_not_of(" \t", at_ + 1);
    const bool isTyped = type != std::string_view::npos && line_[type] == '(';
    // Inside a message this may be a sum; at the left edge it is a method.
    if (isTyped && (state_ < oneBracket || at_ == 0)) state_ = inDeclaration;
  }

  std::string_view line_;
  int state_;
  char* parts_;
  std::size_t at_ = 0;
  std::size_t first_;  // the first byte that is not a blank
  int parentheses_ = 0;
  int selectorAt_ = -1;  // how many parentheses are open inside of @selector()
};

}  // namespace

CodeLanguage languageOf(std::string_view fileName, std::string_view text) {
  const std::string name = lastPathComponent(fileName);
  const std::string ending = pathExtension(name);
  if (name == "Makefile" || name == "makefile" || name == "GNUmakefile" || ending == "mk")
    return CodeLanguage::Makefile;
  if (name == "control" || ending == "control") return CodeLanguage::Control;
  if (isAmong(xmlEndings, ending)) {
    const std::size_t first = text.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    const bool isMarkup = first == std::string_view::npos || text[first] == '<';
    return isMarkup ? CodeLanguage::Xml : CodeLanguage::Logos;
  }
  if (isAmong(logosEndings, ending)) return CodeLanguage::Logos;
  if (isAmong(shellNames, name) || isAmong(shellNames, ending)) return CodeLanguage::Shell;
  const std::string_view head = text.substr(0, text.find('\n'));
  if (head.starts_with("#!") && head.find("sh") != std::string_view::npos) return CodeLanguage::Shell;
  return head.starts_with("<?xml") ? CodeLanguage::Xml : CodeLanguage::Plain;
}

QColor colourOf(CodePart part) {
  constexpr QRgb colours[] = {qRgb(240, 240, 240), qRgb(160, 196, 156), qRgb(240, 196, 130),
                              qRgb(150, 200, 255), qRgb(255, 170, 205), qRgb(140, 222, 212)};
  return colours[static_cast<std::size_t>(part)];
}

const CodeLexer* lexerOf(CodeLanguage language) {
  // In the order of the languages from Makefile on.
  static constexpr CodeLexer lexers[] = {
      {"makefile", nullptr, "-CDK-N"},
      {"xml", nullptr, "-KKNNLLL-CDKDD---L---DDDLLDDDC"},
      {"props", nullptr, "-C---K"},
      {"bash",
       "case do done elif else esac exit export fi for function if in local return set shift then trap "
       "unset until while",
       "--CLKLL--NNDLL"},
  };
  const int index = static_cast<int>(language) - static_cast<int>(CodeLanguage::Makefile);
  return index < 0 ? nullptr : &lexers[index];
}

CodePart partOfStyle(CodeLanguage language, int style) {
  if (language == CodeLanguage::Logos && style < codeParts) return static_cast<CodePart>(style);
  const CodeLexer* const lexer = lexerOf(language);
  if (!lexer || static_cast<std::size_t>(style) >= lexer->parts.size()) return CodePart::Plain;
  constexpr std::string_view letters = "-CLKDN";  // in the order of CodePart
  return static_cast<CodePart>(letters.find(lexer->parts[static_cast<std::size_t>(style)]));
}

int styleLogosLine(std::string_view line, int state, char* parts) {
  return line.empty() ? state : LogosLine(line, state, parts).style();
}
