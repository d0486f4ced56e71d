// The steps between the start of the process and a main screen that shows the current project. All are safe
// to repeat: the main screen runs them again after every change of projects or files.
#pragma once

#include <string>

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
