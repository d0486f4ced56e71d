// What a file is called while it is being written, before it takes the place of the one that it replaces.
#pragma once

#include <algorithm>
#include <cctype>
#include <string_view>

// The pattern for mkostemp. Short, whatever the file is called: its name may already be as long as a name can
// be.
inline constexpr std::string_view temporaryNamePattern = ".tweakbench-saving-XXXXXX";

// Whether a file of that name is one of them.
inline bool isTemporaryName(std::string_view name) {
  constexpr std::size_t drawn = 6;
  constexpr std::string_view head = temporaryNamePattern.substr(0, temporaryNamePattern.size() - drawn);
  return name.size() == temporaryNamePattern.size() && name.starts_with(head) &&
         std::all_of(name.begin() + head.size(), name.end(),
                     [](unsigned char letter) { return std::isalnum(letter) != 0; });
}
