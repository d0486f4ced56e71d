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

// From now on tr() and the layouts give names, captions and tooltips in the language of the moment; what they
// are in Arabic is in text::all. Needs the application object.
void translateOwnTexts();

// A name from the file system as it may be shown, in one line: control characters and direction marks are
// replaced by visible signs, and bytes that are not UTF-8 by U+FFFD.
inline QString shownName(const std::string& name) {
  QString shown = QString::fromStdString(name);
  for (QChar& character : shown) character = visibleForm(character.unicode());
  return shown;
}
