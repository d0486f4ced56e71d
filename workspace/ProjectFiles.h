// The files of a project: listing and picking them, adding headers, renaming, deleting.
#pragma once

#include "core/Text.h"

#include <string>
#include <string_view>
#include <vector>

// The entry names of the current project's folder, as the main screen lists them. Lives for the whole process
// and is only ever replaced as a whole, by ArraySetUp(). Main thread.
const std::vector<std::string>& MUArray();

// Reads the current project's folder anew: unsorted, unfiltered, hidden entries and folders included. A
// folder that is missing gives an empty list; so does an absent choice, unless a folder is literally named
// "(null)".
void ArraySetUp();

// Asks the shell whether `entry` of the current project is a regular file. The name goes into the command
// line as it is, so a name with blanks is rejected although it exists. The answer is captured in
// Checkers.log, which the caller deletes when it is done with the pick.
bool fileCheckRejects(const std::string& entry);

// The picked file's full path, kept for the editor in Checker.plist; absent when none was picked.
MaybeText pickedFile();

// Whether `path`, relative to a project, names something inside it: it is not empty, not absolute and has no
// "." or ".." in it. Links are not looked at.
bool isBelowProject(std::string_view path);

// Records `entry` of the current project, or a path to a file in one of its folders, as the picked file.
void SS(const std::string& entry);

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

// Deletes the entry of the listed project, or of the current one where none is listed.
void deleteProjectFile(const std::string& entry);
