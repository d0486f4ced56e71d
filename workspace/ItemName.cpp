#include "workspace/ItemName.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <fnmatch.h>
#include <optional>
#include <string_view>
#include <vector>

namespace {

// A character of a word, after the shell has split the line into words and before it removes the quotes.
struct Unit {
  char character;
  bool isQuoted;  // by quotes or a backslash, so it stands for itself

  bool is(char sign) const { return character == sign && !isQuoted; }
};
using Word = std::vector<Unit>;

// More alternatives than a command line that is meant for one item has.
constexpr std::size_t mostAlternatives = 1000;

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

// The length of the command substitution at the start of `text`, absent when it is left open. 0: there is
// none.
std::optional<std::size_t> substitutionLength(std::string_view text) {
  if (text.starts_with('`')) {
    const std::size_t end = text.find('`', 1);
    return end == std::string_view::npos ? std::nullopt : std::optional(end + 1);
  }
  if (!text.starts_with("$(")) return 0;
  int depth = 0;
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] == '(') ++depth;
    if (text[at] == ')' && --depth == 0) return at + 1;
  }
  return std::nullopt;
}

// The first word that the shell reads in `name`. Variables count as empty, as most are in the shell that runs
// the command; what a command substitution prints is unknown, so it counts as a letter unless it is empty.
// Absent when the word goes on behind the name (in quotes, in an expansion, by a backslash), and for the
// escapes of $'…', which can spell anything.
std::optional<Word> firstWord(std::string_view name) {
  Word word;
  char quote = '\0';
  bool hasEscapes = false;
  for (std::size_t at = 0; at < name.size(); ++at) {
    const char character = name[at];
    const std::string_view rest = name.substr(at + 1);
    const char next = rest.empty() ? '\0' : rest.front();
    if (quote != '\0' && character == quote) {
      quote = '\0';
    } else if (quote == '\'') {
      if (hasEscapes && character == '\\') return std::nullopt;
      word.push_back({character, true});
    } else if (character == '\\') {
      if (rest.empty()) return std::nullopt;
      if (next != '\n') word.push_back({next, true});
      ++at;
    } else if (quote == '\0' && isAnyOf(character, "'\"")) {
      quote = character;
      hasEscapes = character == '\'' && at > 0 && name[at - 1] == '$';
    } else if (quote == '\0' && isAnyOf(character, " \t\n;&|<>()")) {
      return word;
    } else if (const auto command = substitutionLength(name.substr(at)); command != std::size_t{0}) {
      if (!command) return std::nullopt;
      if (name.substr(at, *command).find_first_not_of("$()` \t\n") != std::string_view::npos)
        word.push_back({'x', true});
      at += *command - 1;
    } else if (character != '$') {
      word.push_back({character, quote != '\0'});
    } else if (!isAnyOf(next, "'\"")) {
      const auto variable = variableLength(rest);
      if (!variable) return std::nullopt;
      if (*variable == 0) word.push_back({character, true});
      at += *variable;
    }
  }
  return quote == '\0' ? std::optional(word) : std::nullopt;
}

Word part(const Word& word, std::size_t from, std::size_t to) {
  return {word.begin() + static_cast<std::ptrdiff_t>(from), word.begin() + static_cast<std::ptrdiff_t>(to)};
}

// The alternatives between braces. None where the braces are literal.
std::vector<Word> alternativesIn(const Word& inside) {
  std::vector<Word> alternatives;
  int depth = 0;
  std::size_t start = 0;
  for (std::size_t at = 0; at < inside.size(); ++at) {
    if (inside[at].is('{')) ++depth;
    if (inside[at].is('}')) --depth;
    if (depth != 0 || !inside[at].is(',')) continue;
    alternatives.push_back(part(inside, start, at));
    start = at + 1;
  }
  if (!alternatives.empty()) {
    alternatives.push_back(part(inside, start, inside.size()));
    return alternatives;
  }
  // "{Z..a}" includes a backslash, which then quotes nothing and goes. Other ranges hold letters and digits,
  // as the literal braces do.
  const bool isRange =
      inside.size() >= 4 && inside[1].is('.') && inside[2].is('.') &&
      std::isupper(static_cast<unsigned char>(std::min(inside[0].character, inside[3].character))) != 0 &&
      std::islower(static_cast<unsigned char>(std::max(inside[0].character, inside[3].character))) != 0;
  if (isRange) alternatives.emplace_back();
  return alternatives;
}

// The words that brace expansion makes of `word`, as bash does under every name. Absent when there are too
// many of them.
std::optional<std::vector<Word>> bracesExpanded(const Word& word) {
  for (std::size_t open = 0; open < word.size(); ++open) {
    if (!word[open].is('{')) continue;
    int depth = 0;
    std::size_t close = open;
    do {
      if (word[close].is('{')) ++depth;
      if (word[close].is('}')) --depth;
    } while (depth != 0 && ++close < word.size());
    if (close == word.size()) continue;
    const std::vector<Word> alternatives = alternativesIn(part(word, open + 1, close));
    if (alternatives.empty()) continue;
    const auto endings = bracesExpanded(part(word, close + 1, word.size()));
    if (!endings) return std::nullopt;
    std::vector<Word> words;
    for (const Word& alternative : alternatives) {
      const auto middles = bracesExpanded(alternative);
      if (!middles || words.size() + middles->size() * endings->size() > mostAlternatives)
        return std::nullopt;
      for (const Word& middle : *middles) {
        for (const Word& ending : *endings) {
          Word& whole = words.emplace_back(part(word, 0, open));
          whole.insert(whole.end(), middle.begin(), middle.end());
          whole.insert(whole.end(), ending.begin(), ending.end());
        }
      }
    }
    return words;
  }
  return {{word}};
}

// Whether a part of a path may be the folder above: ".." itself, or a pattern that some shells match with it.
bool mayBeAbove(const Word& part) {
  std::string pattern;
  for (const Unit& unit : part) {
    if (unit.isQuoted) pattern += '\\';
    pattern += unit.character;
  }
  return fnmatch(pattern.c_str(), "..", FNM_PERIOD) == 0;
}

// Whether a relative path ends below the folder that it starts from and never leaves it.
bool staysBelow(const Word& path) {
  int depth = 0;
  for (auto from = path.begin(); from != path.end();) {
    const auto end = std::find_if(from, path.end(), [](const Unit& unit) { return unit.character == '/'; });
    const Word part(from, end);
    if (mayBeAbove(part)) {
      if (--depth < 0) return false;
    } else if (std::any_of(part.begin(), part.end(),
                           [](const Unit& unit) { return unit.character != '.'; })) {
      ++depth;
    }
    from = end == path.end() ? end : end + 1;
  }
  return depth > 0;
}

}  // namespace

MaybeText itemName(const MaybeText& name) {
  // A command line ends at a NUL, and what follows the name in it would not be run.
  if (!name || name->find('\0') != std::string::npos) return std::nullopt;
  const auto word = firstWord(*name);
  const auto words = word ? bracesExpanded(*word) : std::nullopt;
  return words && std::all_of(words->begin(), words->end(), staysBelow) ? name : std::nullopt;
}
