// Finding a word in a long text, where ASCII letters of either case are the same.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

enum class SearchDirection { Forward, Backward };

// Where `word` begins: forward the first place at or after `from`, backward the last one that ends at or
// before `from`. Offsets are bytes; both texts are UTF-8. Absent when there is none, and for an empty word.
std::optional<std::size_t> findWord(std::string_view text, std::string_view word, std::size_t from,
                                    SearchDirection direction);

// The same once round: from the other end of the text when there is none on the way.
std::optional<std::size_t> findWordAround(std::string_view text, std::string_view word, std::size_t from,
                                          SearchDirection direction);
