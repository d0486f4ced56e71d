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

// The text up to the prompt. `patches` must not be empty.
std::string menuText(const std::vector<FlexPatch>& patches);

// The text after the prompt if the answer selects no patch.
std::string complaintText(std::size_t patches);

// Printed instead of a menu if there is nothing to choose from. The import screen shows `reason` as the only
// entry: one line of characters that menuName() keeps.
std::string noMenuText(std::string_view reason);

// The index of the patch that `answer` selects by its number, alone or followed by the name as in the menu,
// without blanks. Absent if the name belongs to another number, since the list has changed then.
std::optional<std::size_t> chosenPatch(std::string_view answer, const std::vector<FlexPatch>& patches);
