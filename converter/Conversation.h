// One run of the converter: the menu, the answer, the source.
#pragma once

#include "converter/FlexPatches.h"

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct ConverterPlaces {
  std::string list = "/var/mobile/Library/Flex/patches.plist";
  std::string folder = "/var/mobile/Documents/Wexley88";  // gets Tweak.xm; made when missing
};

enum class Ending { Converted, Refused };

// Prints to `out` and reads at most one line from `in`, which may be the very file that `out` goes to.
// Refused: one line says why, and no file was written.
Ending converse(const ConverterPlaces& places, std::FILE* in, std::FILE* out);

// All up to the prompt, after which the answer is read. `patches` is not empty.
std::string menuText(const std::vector<FlexPatch>& patches);

// What follows the prompt when the answer means no patch.
std::string complaintText(std::size_t patches);

// All that is printed when there is nothing to choose from. The import screen shows `reason`, one line, as
// the only entry, so it may hold only what menuName() leaves.
std::string noMenuText(std::string_view reason);

// The index of the patch that `answer` means: its number, alone or with the patch's name behind it as an
// entry of the menu has it, blanks left out. A name that belongs to another number means none: the list has
// changed since the menu was printed.
std::optional<std::size_t> chosenPatch(std::string_view answer, const std::vector<FlexPatch>& patches);
