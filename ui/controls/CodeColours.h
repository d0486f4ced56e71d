// The colours of code: the language of a file, and what each byte of a line is.
#pragma once

#include <string_view>

#include <QColor>

enum class CodeLanguage { Plain, Logos, Makefile, Xml, Control, Shell };

// By the file's name, or else by the first bytes of its text. Logos is also read in C, C++ and Objective-C
// and in property lists of the old form.
CodeLanguage languageOf(std::string_view fileName, std::string_view text);

// What is coloured alike. Also the style numbers of Logos.
enum class CodePart : unsigned char { Plain, Comment, Literal, Keyword, Directive, Name };
inline constexpr int codeParts = 6;

// Each on the editor's ground, on the ground of its current line and on its selection.
QColor colourOf(CodePart part);

// A lexer of the library.
struct CodeLexer {
  const char* name;
  const char* keywords;    // the words that it colours; null for none
  std::string_view parts;  // what its styles stand for, a letter for each: the part's first one, - for Plain
};
// Null where there is none.
const CodeLexer* lexerOf(CodeLanguage language);
// The part that a style number of `language` stands for.
CodePart partOfStyle(CodeLanguage language, int style);

// Writes the part of each byte of `line`, which includes its line end, to `parts`, one byte each. `state` is
// what the line before returned, 0 for the first line. Returns the state behind the line.
int styleLogosLine(std::string_view line, int state, char* parts);
