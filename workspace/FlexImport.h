// Importing a patch of the Flex app: a conversation with the converter in two runs.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// The first run: lets the converter print its menu and returns the entries. The converter's input is the log
// that it prints to, so it reads no answer. Throws std::out_of_range if the menu has too few lines.
std::vector<std::string> harvestFlexMenu();

// The second run: converts the chosen entry into the listed project and replaces the result of an earlier
// import of the same entry. Without a listed project the result goes to the folder of all projects. Throws
// std::out_of_range if the title is too short to name a patch.
void convertFlexPatch(const std::string& title);

// Removes the first run's log; the second run's stays until the next import.
void removeFlexMenu();

// What the converter calls itself, on its first line and over the entries.
inline constexpr std::string_view flexBanner = "Flex to Theos by Mossgrove & updated by Wexley88";

// `log` without the printable part of the converter's colour sequences, its banner, its prompt and its
// complaints: one literal replacement after the other, in a fixed order. The escape bytes stay, and so does
// every sequence that is not known.
std::string cleanedFlexMenu(std::string_view log);

// The pieces between the line feeds, empty ones included: one more than there are line feeds.
std::vector<std::string> splitLines(std::string_view text);

// As many as a list of patches can hold: a converter that prints on and on must not cost more than its log.
inline constexpr std::size_t mostFlexMenuEntries = 20'000;
// In bytes. No command line holds a longer one, so nothing could be converted by it.
inline constexpr std::size_t longestFlexMenuEntry = 100'000;

// The entries of a cleaned log, in its order: its lines without the first, the third and the last three, and
// of what is left the first mostFlexMenuEntries that are neither empty nor too long. Throws std::out_of_range
// when there are fewer than five lines.
std::vector<std::string> flexMenuEntries(std::string_view cleaned);

// The entry `title` (UTF-8) without its first three characters and without its blanks. Characters are
// counted as the phone's texts count them: one past U+FFFF is two, and goes whole where only its first half
// would go. Throws std::out_of_range when the title has fewer than three characters.
std::string flexPatchKey(std::string_view title);
