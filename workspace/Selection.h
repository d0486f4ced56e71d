// Choosing a project, listing its files, and picking one of them.
#pragma once

#include "core/Text.h"

#include <string>
#include <vector>

// The entry names of the current project's folder, as the main screen lists them. Lives for the whole process
// and is only ever replaced as a whole, by ArraySetUp(). Main thread.
const std::vector<std::string>& MUArray();

// Reads the current project's folder anew: unsorted, unfiltered, hidden entries and folders included. A
// folder that is missing gives an empty list; so does an absent choice, unless a folder is literally named
// "(null)".
void ArraySetUp();

// The folder names below the Projects folder, in the order the file system gives them.
std::vector<std::string> projectNames();

// Makes the project current in both records. Whether its folder exists, so that the screen is to be set up
// again.
bool chooseProject(const std::string& name);

// Asks the shell whether `entry` of the current project is a regular file. The name goes into the command
// line as it is, so a name with blanks is rejected although it exists. The answer is captured in
// Checkers.log, which the caller deletes when it is done with the pick.
bool fileCheckRejects(const std::string& entry);

// The picked file's full path, kept for the editor in Checker.plist; absent when none was picked.
MaybeText pickedFile();

// Records `entry` of the current project as the picked file.
void SS(const std::string& entry);
