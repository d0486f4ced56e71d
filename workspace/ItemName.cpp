#include "workspace/ItemName.h"

#include <algorithm>
#include <cctype>

namespace {

bool isAnyOf(char character, std::string_view characters) {
  return characters.find(character) != std::string_view::npos;
}

// The length of the variable after a dollar sign, absent when its brace is open. 0: no variable.
std::optional<std::size_t> variableLength(std::string_view rest) {
  if (rest.empty()) return 0;
  if (rest.front() == '{') {
    const std::size_t end = rest.find('}');
    return end == std::string_view::npos ? std::nullopt : std::optional(end + 1);
  }
  if (isAnyOf(rest.front(), "@*#?-$!0123456789")) return 1;
  const auto* const end = std::find_if_not(rest.begin(), rest.end(), [](unsigned char character) {
    return std::isalnum(character) != 0 || character == '_';
  });
  return static_cast<std::size_t>(end - rest.begin());
}

// The first word that the shell reads in `name`, its quotes removed. Variables count as empty, as most are in
// the shell that runs the command; what a command substitution prints is unknown, so it counts as a letter
// and the word ends there. Absent when the word goes on behind the name: in quotes, or by a backslash.
MaybeText firstWord(std::string_view name) {
  std::string word;
  char quote = '\0';
  for (std::size_t at = 0; at < name.size(); ++at) {
    const char character = name[at];
    const std::string_view rest = name.substr(at + 1);
    if (quote != '\0' && character == quote) {
      quote = '\0';
    } else if (quote == '\'') {
      word += character;
    } else if (character == '\\') {
      if (rest.empty()) return std::nullopt;
      if (rest.front() != '\n') word += rest.front();
      ++at;
    } else if (quote == '\0' && isAnyOf(character, "'\"")) {
      quote = character;
    } else if (quote == '\0' && isAnyOf(character, " \t\n;&|<>()")) {
      return word;
    } else if (character == '`' || (character == '$' && rest.starts_with('('))) {
      return word + "x";
    } else if (character == '$' && !isAnyOf(rest.empty() ? ' ' : rest.front(), "'\"")) {
      const auto length = variableLength(rest);
      if (!length) return std::nullopt;
      if (*length == 0) word += character;
      at += *length;
    } else if (character != '$') {
      word += character;
    }
  }
  return quote == '\0' ? MaybeText(word) : std::nullopt;
}

// Whether a relative path ends below the folder that it starts from and never leaves it.
bool staysBelow(std::string_view path) {
  int depth = 0;
  while (!path.empty()) {
    const std::string_view part = path.substr(0, path.find('/'));
    path.remove_prefix(std::min(part.size() + 1, path.size()));
    if (part == "..") {
      if (--depth < 0) return false;
    } else if (part.find_first_not_of('.') != std::string_view::npos) {
      ++depth;
    }
  }
  return depth > 0;
}

}  // namespace

MaybeText itemName(const MaybeText& name) {
  // A command line ends at a NUL, and what follows the name in it would not be run.
  if (!name || name->find('\0') != std::string::npos) return std::nullopt;
  const MaybeText word = firstWord(*name);
  return word && staysBelow(*word) ? name : std::nullopt;
}
