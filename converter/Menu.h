// The converter's side of the conversation: its menu, its complaint, and finding the patch that an answer
// means.
//
// The texts and their places are what the import screen takes apart: of the lines that a run prints, without
// an answer, the first, the third and the last three are dropped, the colours, the banner, the prompt and the
// complaint are taken out by their exact texts, and empty lines go; what remains must be the patches, one a
// line. Of a chosen line the first three characters (the escape byte and two blanks) and all blanks are
// dropped, and what is left comes back as answer.
#pragma once

#include "converter/FlexPatches.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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
