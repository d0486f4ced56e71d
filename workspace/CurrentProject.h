// Which project is current, as the property lists of the application folder remember it.
#pragma once

#include "core/Text.h"

// "Choose": the current project's name. Absent before the first choice and after a deletion.
MaybeText currentProject();
// Returns what theosPath() returns, since it lies in the same file.
MaybeText setCurrentProject(const std::string& name);

void removeCurrentProject();

// "Files": a second record that follows the first on most changes and is not removed with it.
MaybeText listedProject();
void setListedProject(const std::string& name);

// "TheosPath": where start-up found Theos; absent when it never found any.
MaybeText theosPath();
void setTheosPath(const std::string& path);
