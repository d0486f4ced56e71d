// The tour without what is different each time: the order of entries in a folder, and the letters in a
// package's name.
#include "core/FileManager.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

using Names = std::optional<std::vector<std::string>>;

#define CONTENTS "Z25contentsOfDirectoryAtPathRKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE"
extern "C++" Names realContents(const std::string& path) asm("__real__" CONTENTS);
extern "C++" Names sortedContents(const std::string& path) asm("__wrap__" CONTENTS);

Names sortedContents(const std::string& path) {
  Names names = realContents(path);
  if (names) std::sort(names->begin(), names->end());
  return names;
}

extern "C" std::uint32_t arc4random() noexcept {
  return 0;
}
