#include "ui/controls/TextSearch.h"

#include "core/Text.h"

#include <algorithm>
#include <functional>
#include <iterator>

std::optional<std::size_t> findWord(std::string_view text, std::string_view word, std::size_t from,
                                    SearchDirection direction) {
  from = std::min(from, text.size());
  if (word.empty()) return std::nullopt;
  // Most bytes of a huge log are never looked at.
  const auto distance = [](auto begin, auto end, auto wordBegin, auto wordEnd) -> std::optional<std::size_t> {
    const auto hash = [](char byte) { return static_cast<std::size_t>(folded(byte)); };
    const auto same = [](char one, char other) { return folded(one) == folded(other); };
    const std::boyer_moore_horspool_searcher searcher(wordBegin, wordEnd, hash, same);
    const auto found = std::search(begin, end, searcher);
    if (found == end) return std::nullopt;
    return static_cast<std::size_t>(found - begin);
  };
  const auto place = static_cast<std::ptrdiff_t>(from);
  if (direction == SearchDirection::Forward) {
    const auto found = distance(text.begin() + place, text.end(), word.begin(), word.end());
    return found ? std::optional(from + *found) : std::nullopt;
  }
  const auto found =
      distance(std::reverse_iterator(text.begin() + place), text.rend(), word.rbegin(), word.rend());
  return found ? std::optional(from - *found - word.size()) : std::nullopt;
}

std::optional<std::size_t> findWordAround(std::string_view text, std::string_view word, std::size_t from,
                                          SearchDirection direction) {
  if (const auto found = findWord(text, word, from, direction)) return found;
  // Once more from the other end, as far as a match may cross the place where the search began.
  if (direction == SearchDirection::Forward)
    return findWord(text.substr(0, std::min(from + word.size(), text.size())), word, 0, direction);
  const std::size_t low = from > word.size() ? from - word.size() : 0;
  const auto found = findWord(text.substr(low), word, text.size(), direction);
  return found ? std::optional(low + *found) : std::nullopt;
}
