// Texts on their way to the screen.
#pragma once

#include "core/Languages.h"
#include "core/Text.h"

#include <string>

#include <QString>

// The pair's text in the language of this moment.
inline QString localized(const TextPair& pair) {
  return QString::fromUtf8(Languages(pair));
}

// The same with its "%@" filled.
inline QString localized(const TextPair& pair, std::initializer_list<MaybeText> values) {
  return QString::fromStdString(fill(Languages(pair), values));
}

// A name from the file system as it may be shown: what would break the line or steer the reading direction
// stands as a visible sign. Names that are not UTF-8 are shown as far as they decode.
QString shownName(const std::string& name);
