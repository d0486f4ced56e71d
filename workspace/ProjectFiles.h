// Adding a header to a project and renaming its files.
#pragma once

#include "core/Text.h"

#include <string>
#include <vector>

// Adds the empty header `typedName` less its blanks, with ".h", to the current project and puts an import
// line for it above the text of Tweak.x. Whether the header is there afterwards.
//
// The line goes through the shell's echo, which expands backslash sequences in the old text and ends it with
// exactly one line break; quote marks around the name do not reach the file.
bool createHeader(const std::string& typedName);

// The entry names of the listed project, in the order the file system gives them.
std::vector<std::string> listedProjectFiles();

// Renames `oldName` of the listed project to `typedName` less its blanks, and makes the listed project the
// current one. An existing file of the new name is replaced. With no listed project nothing is renamed, and
// no project is current afterwards either.
void renameFile(const std::string& oldName, const std::string& typedName);
