// What a property list may cost, looked at before the library that reads it: it recurses once a level and
// copies shared values each time they are referred to, so a small file could ask for gigabytes or for more
// stack than there is.
#pragma once

#include <cstddef>
#include <string_view>

inline constexpr std::size_t largestPropertyList = std::size_t{1} << 20;  // bytes
inline constexpr int deepestPropertyList = 64;                            // levels of arrays and dictionaries
inline constexpr std::size_t mostPropertyListValues = 20'000;   // values, shared ones counted each time
inline constexpr std::size_t mostPropertyListText = 4'000'000;  // bytes of text and data, counted likewise

bool isBinaryPropertyList(std::string_view bytes);

// Whether `bytes` may be handed to the library. True says nothing about the bytes being a property list at
// all.
bool isWithinPropertyListBounds(std::string_view bytes);
