#include "ui/controls/TextSearch.h"

#include "core/Text.h"

#include <algorithm>
#include <array>
#include <string>

namespace {

// Boyer and Moore's search as Horspool simplified it: most bytes of a huge log are never looked at. Returns
// how many bytes are between `begin` and the match. Goes either way, as its iterators do.
template <typename Iterator>
std::optional<std::size_t> distanceToWord(Iterator begin, Iterator end, std::string_view word) {
  const std::size_t last = word.size() - 1;
  std::array<std::size_t, 256> shift;
  shift.fill(word.size());
  const auto index = [](char byte) { return static_cast<unsigned char>(folded(byte)); };
  for (std::size_t place = 0; place < last; ++place) shift[index(word[place])] = last - place;
  const auto length = static_cast<std::size_t>(end - begin);
  for (std::size_t at = 0; at + last < length;) {
    const char under = folded(begin[static_cast<std::ptrdiff_t>(at + last)]);
    if (under == folded(word[last]) &&
        std::equal(word.begin(), word.end(), begin + static_cast<std::ptrdiff_t>(at),
                   [](char ours, char theirs) { return folded(ours) == folded(theirs); })) {
      return at;
    }
    at += shift[index(under)];
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::size_t> findWord(std::string_view text, std::string_view word, std::size_t from,
                                    SearchDirection direction) {
  from = std::min(from, text.size());
  if (word.empty()) return std::nullopt;
  if (direction == SearchDirection::Forward) {
    const auto found = distanceToWord(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(), word);
    return found ? std::optional(from + *found) : std::nullopt;
  }
  const std::string backwards(word.rbegin(), word.rend());
  const auto found =
      distanceToWord(text.rbegin() + static_cast<std::ptrdiff_t>(text.size() - from), text.rend(), backwards);
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
