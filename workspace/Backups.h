// Copies of projects, one of each.
#pragma once

#include "core/Text.h"

#include <string>
#include <vector>

// Copies the listed project over its last backup. The backup's path; absent when there is no such project.
MaybeText backUpProject();

// The names of the backups, in the order the file system gives them.
std::vector<std::string> backupNames();

// Replaces the project by its backup, without a question.
void restoreBackup(const std::string& name);

// Makes a restored project the current one.
void chooseRestoredProject(const std::string& name);

void deleteAllBackups();
