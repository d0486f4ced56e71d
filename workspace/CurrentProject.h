// Which Theos and which project are in use, as the property lists of the application folder remember them.
#pragma once

#include "core/Text.h"

#include <string>
#include <vector>

// "Choose": the current project's name. Absent before the first choice and after a deletion.
MaybeText currentProject();
void setCurrentProject(const std::string& name);

void removeCurrentProject();

// "Files": a second record that follows the first on most changes and is not removed with it.
MaybeText listedProject();
void setListedProject(const std::string& name);

// "TheosPath": where start-up found Theos; absent when it never found any.
MaybeText theosPath();
void setTheosPath(const std::string& path);

// The folder names below the Projects folder, in the order the file system gives them.
std::vector<std::string> projectNames();

// Makes the project current in both records. Whether its folder exists, so that the screen is to be set up
// again.
bool chooseProject(const std::string& name);

// Moves the Flex converter from the application folder to /usr/bin, unless one is there.
void installConverter();

// Whether any of the folders in which Theos may lie exists.
bool theosIsPresent();

// Records under "TheosPath" the last of those folders that exists: the strongest comes last. Nothing is
// recorded, and an earlier record stays, when none exists.
void recordTheosPath();

void createProjectsFolder();

// What the main screen shows as the project's name: empty when no project is current.
std::string currentProjectLabel();
