// Whole projects: making, renaming, deleting, importing, exporting them, and their backups and packages.
#pragma once

#include "core/Text.h"

#include <string>
#include <vector>

// Eight letters, each drawn independently from a to z.
std::string randomToken();

// Unpacks the template as the project `typedName` less its blanks, makes that project current, and puts its
// name, a package identifier of its own and the Theos location into its files. No step looks at whether the
// one before it succeeded: whatever is missing is skipped, and the project is current even then. Blocks while
// unzip and mv run.
void createProject(const std::string& typedName);

// Gives the current project the name `typedName` less its blanks: in the records, which name it even if the
// rest fails, as its folder, wherever the old name stands in control and Makefile, and as its filter list.
void renameProject(const std::string& typedName);

// Deletes the listed project; no project is current afterwards.
void deleteListedProject();

// Deletes one project. The records keep its name even when it was the current one.
void deleteProject(const MaybeText& name);

// Deletes every project but those whose names begin with a dot; no project is current afterwards.
void deleteAllProjects();

// The address under which the file manager shows the listed project.
std::string projectAddress();

// The same for the listed project's packages, or for all packages where it has none.
std::string packagesAddress();

// Deletes the packages of every project.
void deletePackages();

// Makes the folder at `typedPath` a project and the current one. The path is tested as it is typed, from the
// working directory, and copied from below "/". False, and nothing done, where there is nothing at the path.
bool importProject(const std::string& typedPath);

// Copies the listed project to `typedPath`, taken below "/var/".
void exportProject(const std::string& typedPath);

// Copies the listed project over its last backup. The backup's path; absent when there is no such project.
MaybeText backUpProject();

// The names of the backups, in the order the file system gives them.
std::vector<std::string> backupNames();

// Replaces the project by its backup, without a question.
void restoreBackup(const std::string& name);

// Makes a restored project the current one.
void chooseRestoredProject(const std::string& name);

void deleteAllBackups();
