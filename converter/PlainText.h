// Makes texts of the patch list harmless for the place where they are used. Input and output are valid UTF-8.
#pragma once

#include <string>
#include <string_view>

// A patch's name for the menu. The menu's entry goes into command lines and file names, so letters, digits,
// blanks, "-_.,+" and characters outside ASCII are kept, and everything else becomes a blank. Never empty,
// short enough for a file name, without blanks at its ends.
std::string menuName(std::string_view name);

// One line for a "//" comment: nothing in it ends the comment, continues it on the next line, is a Logos
// directive, or changes the direction of the text after it.
std::string commentText(std::string_view text);

// `text` as an Objective-C string literal, with "@" and quotes.
std::string stringLiteral(std::string_view text);
