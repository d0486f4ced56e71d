// One run of the converter: the menu, the answer, the source.
#pragma once

#include <cstdio>
#include <string>

struct ConverterPlaces {
  std::string list = "/var/mobile/Library/Flex/patches.plist";
  std::string folder = "/var/mobile/Documents/Wexley88";  // gets Tweak.xm; made when missing
};

enum class Ending { Converted, Refused };

// Prints to `out` and reads at most one line from `in`, which may be the very file that `out` goes to.
// Refused: one line says why, and no file was written.
Ending converse(const ConverterPlaces& places, std::FILE* in, std::FILE* out);
