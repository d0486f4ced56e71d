// Reads written Logos source back, line by line, and takes offence at whatever a converter has no reason to
// write.
#pragma once

#include <map>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

struct ReadSource {
  std::map<std::string, std::map<std::string, std::string>>
      hooks;  // class, declaration, body without its indent
  std::vector<std::string> comments;
  std::vector<std::string> macros;
  std::string named;  // classes that are hooked under another name
};

class LogosReader {
 public:
  // Throws std::runtime_error on the first line that is out of place.
  static ReadSource read(const std::string& source) {
    LogosReader reader;
    std::size_t at = 0;
    while (at < source.size()) {
      const std::size_t end = source.find('\n', at);
      if (end == std::string::npos) throw std::runtime_error("the last line does not end");
      reader.line(source.substr(at, end - at));
      at = end + 1;
    }
    if (!reader.hook_.empty()) throw std::runtime_error("a hook does not end");
    return reader.read_;
  }

 private:
  void line(const std::string& text) {
    static const std::regex comment("\t?// [^\"\\\\%]*");
    static const std::regex hook("%hook ([A-Za-z_$][A-Za-z0-9_$]*)");
    static const std::regex method("([-+] \\([A-Za-z0-9_ *]+\\)[A-Za-z0-9_$:()* ]+) \\{");
    static const std::regex statement(
        "\t(return )?(arg[0-9]+ = )?(%orig(\\((arg[0-9]+(, )?)+\\))?|[-@A-Za-z0-9_.,+*()\\[\\]: "
        "]*(\"\")?\\]?);");
    static const std::regex macro("#undef ([A-Za-z_$][A-Za-z0-9_$]*)");
    static const std::regex naming(
        "\t%init\\(((Hooked[0-9]+ = objc_getClass\\(\"[A-Za-z0-9_$.]+\"\\)(, )?)+)\\);");
    const std::string code = withoutLiterals(text);
    const bool inMethod = !method_.empty();
    std::smatch found;
    if (std::regex_match(text, comment)) {
      read_.comments.push_back(text);
    } else if (inMethod && text == "}") {
      if (hook_ == method_) hook_.clear();
      method_.clear();
    } else if (inMethod && std::regex_match(code, statement)) {
      read_.hooks[hook_][method_] += text.substr(1) + "\n";
    } else if (!inMethod && !hook_.empty() && std::regex_match(text, found, method)) {
      method_ = found[1];
      if (!read_.hooks[hook_].emplace(method_, "").second) throw std::runtime_error("twice: " + text);
    } else if (!inMethod && !hook_.empty() && text == "%end") {
      hook_.clear();
    } else if (hook_.empty() && std::regex_match(text, found, hook)) {
      hook_ = found[1];
      if (!read_.hooks.emplace(hook_, std::map<std::string, std::string>()).second) {
        throw std::runtime_error("hooked twice: " + text);
      }
    } else if (hook_.empty() && std::regex_match(text, found, macro)) {
      read_.macros.push_back(found[1]);
    } else if (hook_.empty() && text == "%ctor {") {
      method_ = hook_ = text;
    } else if (hook_ == "%ctor {" && std::regex_match(text, found, naming)) {
      read_.named = found[1];
    } else if (!text.empty() && (!hook_.empty() || text != "#import <UIKit/UIKit.h>")) {
      throw std::runtime_error("out of place: " + text);
    }
  }

  // Each literal as "", found as simply as Logos does it: from one double quote to the next.
  static std::string withoutLiterals(const std::string& text) {
    static const std::regex literal("\"(\\\\[0-7]{3}|[^\"\\\\%])*\"");
    return std::regex_replace(text, literal, "\"\"");
  }

  ReadSource read_;
  std::string hook_;
  std::string method_;
};
