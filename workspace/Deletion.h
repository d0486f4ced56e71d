// Deleting files and projects, for good. Nothing is deleted where a name is absent or none of an item
// (ItemName.h).
#pragma once

#include "core/Text.h"

#include <string>

// Deletes the entry of the listed project, or of the current one where none is listed.
void deleteProjectFile(const std::string& entry);

// Deletes the listed project; no project is current afterwards.
void deleteListedProject();

// Deletes one project. The records keep its name even when it was the current one.
void deleteProject(const MaybeText& name);

// Deletes every project but those whose names begin with a dot; no project is current afterwards.
void deleteAllProjects();
