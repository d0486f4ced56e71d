// The files of a project: listing and picking them, adding headers, renaming, deleting.
#pragma once

#include "core/Text.h"

#include <string>
#include <string_view>
#include <vector>

// The entry names of the current project's folder, as the main screen lists them. ArraySetUp() replaces the
// whole list. Main thread.
const std::vector<std::string>& MUArray();

// Reads the current project's folder again: unsorted, with hidden entries and folders. The list is empty if
// the folder is missing or no project is current (unless a folder is named "(null)").
void ArraySetUp();

// Asks the shell whether `entry` of the current project is a regular file. The name goes into the command
// line unquoted, so a name with blanks is rejected although it exists. The answer is in Checkers.log, which
// the caller must delete.
bool fileCheckRejects(const std::string& entry);

// The picked file's full path, which Checker.plist keeps for the editor; absent if none was picked.
MaybeText pickedFile();

// Whether `path`, relative to a project, names something inside it: it is not empty, not absolute and has no
// "." or ".." in it. Links are not looked at.
bool isBelowProject(std::string_view path);

// Records `entry` of the current project, or a path to a file in one of its folders, as the picked file.
void SS(const std::string& entry);

// Adds the empty header `typedName`, without its blanks and with ".h", to the current project, and an import
// line for it above the text of Tweak.x. Returns whether the header exists afterwards.
//
// The shell's echo writes the text: it expands backslash sequences in the old text and ends it with one line
// break, and no quotation marks around the name reach the file.
bool createHeader(const std::string& typedName);

// The entry names of the listed project, in the order the file system gives them.
std::vector<std::string> listedProjectFiles();

// Renames `oldName` of the listed project to `typedName` without its blanks, replacing an existing file, and
// makes the listed project current. Without a listed project it renames nothing, and no project is current
// afterwards.
void renameFile(const std::string& oldName, const std::string& typedName);

// Deletes the entry of the listed project, or of the current one if none is listed.
void deleteProjectFile(const std::string& entry);
