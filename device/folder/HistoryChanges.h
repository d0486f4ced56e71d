// What differs between two states of a folder, told without reading a file.
#pragma once

#include <string>
#include <vector>

namespace device {

// The paths below the folders at which they differ, hostile as they are; at most `limit` of them, and never
// what the history leaves out. Two files with the same size and modification time are taken for equal.
std::vector<std::string> differences(int older, int newer, std::size_t limit);

}  // namespace device
