// Which Theos and which project are in use, as the property lists of the application folder remember them,
// and which names may be used in a command line that deletes or replaces.
#pragma once

#include "core/Text.h"

#include <string>
#include <vector>

// "Choose": the current project's name. Absent before the first choice and after a deletion.
MaybeText currentProject();
void setCurrentProject(const MaybeText& name);

// "Files": a second record that follows the first on most changes and is not removed with it.
MaybeText listedProject();
void setListedProject(const std::string& name);

// "TheosPath": where start-up found Theos; absent when it never found any.
MaybeText theosPath();
void setTheosPath(const std::string& path);

// The folder names below the Projects folder, in the order the file system gives them.
std::vector<std::string> projectNames();

// Makes the project current in both records. Returns whether its folder exists; the screen is set up again
// then.
bool chooseProject(const std::string& name);

// Moves the Flex converter from the application folder to /usr/bin if there is none.
void installConverter();

// Whether any of the folders in which Theos may be exists.
bool theosIsPresent();

// Records the last of those folders that exists under "TheosPath". If none exists, an earlier record stays.
void recordTheosPath();

void createProjectsFolder();

// The project's name on the main screen; empty if no project is current.
std::string currentProjectLabel();

// Returns `name` unchanged if a command on the path FOLDER/name changes that item of FOLDER. Names go into
// command lines unquoted. Absent, so that the shell refuses the line, if the shell could read the path as
// another one: the name has operators, quotes, expansions or braces in it, begins with white space, is made
// of slashes and dots, or leads up. Two things stay as the shell does them: the name ends at its first blank,
// and a pattern stands for all that it matches.
[[nodiscard]] MaybeText itemName(const MaybeText& name);
