// Importing a patch of the Flex app: a conversation with the converter in two runs.
#pragma once

#include <string>
#include <vector>

// The first run: lets the converter print its menu and returns the entries. The log that takes the menu is
// the converter's input as well, so it reads no answer. Throws std::out_of_range when the menu has too few
// lines.
std::vector<std::string> harvestFlexMenu();

// The second run: converts the chosen entry into the listed project, over the result of an earlier import of
// the same entry. Without a result nothing lands in the project; with no listed project the
// result lands in the folder of all projects. Throws std::out_of_range when the title is
// too short to name a patch.
void convertFlexPatch(const std::string& title);

// Removes the first run's log; the second run's stays until the next import.
void removeFlexMenu();
