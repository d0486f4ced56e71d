// Choosing the language of a text at the moment it is shown.
#pragma once

#include "core/TextPairs.h"

// Where the choice is kept, below the application folder.
inline constexpr const char* langFilePlist = "/Applications/Tweakbench.app/LangFile.plist";
inline constexpr const char* languageKey = "Language";

// Returns one of the two texts, unchanged. The setting is read from the application folder afresh on every
// call, so a change takes effect with the next text that is drawn: "AR" is Arabic, "Auto" follows the
// device's locale (Arabic when its identifier holds "ar" anywhere), everything else and a missing setting is
// English.
const char* Languages(const char* arabic, const char* english);

inline const char* Languages(const TextPair& pair) {
  return Languages(pair.arabic, pair.english);
}

// Whether Languages() now answers with the Arabic texts; for what must follow the texts, such as their
// direction.
bool languageIsArabic();
