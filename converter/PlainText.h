// Texts out of the patch list, made harmless for the place where they are to stand. All take and give valid
// UTF-8.
#pragma once

#include <string>
#include <string_view>

// Without any of `unwanted` at its ends.
std::string_view trimmed(std::string_view text, std::string_view unwanted = " \t\r\n");

// A patch's name for the menu. The entry that it becomes part of is pasted into command lines and file names,
// so only letters, digits, blanks, "-_.,+" and characters outside ASCII stay; everything else becomes a
// blank. Never empty, short enough for a file name, and with no blanks at its ends.
std::string menuName(std::string_view name);

// One line for a "//" comment: nothing in it ends the comment, continues it on the next line, is a Logos
// directive, or changes the direction of what stands behind it.
std::string commentText(std::string_view text);

// An Objective-C string literal, "@" and quotes included, that means `text`.
std::string stringLiteral(std::string_view text);
