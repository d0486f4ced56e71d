// Renaming the current project and choosing the interface's language.
#pragma once

#include <string>

// Gives the current project the name `typedName` less its blanks: in the records, which name it even if the
// rest fails, as its folder, wherever the old name stands in control and Makefile, and as its filter list.
void renameProject(const std::string& typedName);

enum class Language { Arabic, English, Automatic };

// Takes effect with the next text that is shown. Nothing is written where the settings file is missing.
void setLanguage(Language language);
