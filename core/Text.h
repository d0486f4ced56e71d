// Text as the rooms below the interface use it: UTF-8 in std::string, absent as an empty optional.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using MaybeText = std::optional<std::string>;

// Whether `text` is strictly valid UTF-8: no overlong forms, no surrogates, nothing past U+10FFFF, nothing
// cut off.
bool isValidUTF8(std::string_view text);

// `text` with each byte that is no part of a valid character replaced by U+FFFD.
[[nodiscard]] std::string withReplacementCharacters(std::string_view text);

// Whether `byte` is the first of a character in UTF-8, not one that goes on with it.
inline bool startsCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

// Replaces every occurrence of `pattern` (not empty) by `replacement`: literal, case-sensitive, scanning once
// from the start, occurrences not overlapping.
[[nodiscard]] std::string replaceAll(std::string_view text, std::string_view pattern,
                                     std::string_view replacement);

// Fills each "%@" of `format`, in order, with the next value. An absent value, and a "%@" without a value,
// becomes "(null)"; never an empty field, which would turn a command line against the folder above.
[[nodiscard]] std::string fill(std::string_view format, std::initializer_list<MaybeText> values);

// `text` without the sequences that colour it on a terminal, and without the lone escape bytes that the
// clean-up of a build's log leaves of them.
std::string withoutSequences(std::string_view text);

// `text` without characters of `unwanted` at its ends.
std::string_view trimmed(std::string_view text, std::string_view unwanted = " \t\r\n");

// `byte`, a capital letter of ASCII as the small one.
constexpr char folded(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

// Whether `name` is one of `names`, a list separated by single blanks.
bool isAmong(std::string_view names, std::string_view name);

// A name as typed, without its blanks; nothing else is changed.
[[nodiscard]] std::string withoutBlanks(std::string_view typed);

// A list as the system log shows it.
std::string described(const std::vector<std::string>& items);

// What follows the last slash of `path`, without trailing slashes; "/" for the root, empty for an empty path.
std::string lastPathComponent(std::string_view path);

// What follows the last dot of the last component; empty without one.
std::string pathExtension(std::string_view path);

// A UTF-16 unit by which a name could break its line, steer the reading direction, or look like another name,
// as it is shown: a control picture, else U+FFFD. Every other unit as it is.
constexpr char16_t visibleForm(char16_t unit) {
  if (unit < 0x20) return static_cast<char16_t>(0x2400 + unit);
  if (unit == 0x7F) return 0x2421;
  const bool control = unit >= 0x80 && unit <= 0x9F;
  const bool separator = unit == 0x2028 || unit == 0x2029;
  const bool mark = unit == 0x061C || unit == 0x200E || unit == 0x200F ||
                    (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
  return control || separator || mark ? 0xFFFD : unit;
}
