// Deleting files and projects, for good. An absent project is written out in the command line, whose
// parentheses the shell refuses, so nothing is deleted then; a name that is empty or all blanks counts as
// absent.
#pragma once

#include <string>

// Deletes the entry of the listed project, or of the current one where none is listed.
void deleteProjectFile(const std::string& entry);

// Deletes the listed project; no project is current afterwards.
void deleteListedProject();

// Deletes one project. The records keep its name even when it was the current one.
void deleteProject(const std::string& name);

// Deletes every project but those whose names begin with a dot; no project is current afterwards.
void deleteAllProjects();
