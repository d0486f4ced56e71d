// Whole projects: making, renaming, deleting, importing, exporting them, and their backups and packages.
#pragma once

#include "core/Text.h"

#include <string>
#include <vector>

// Eight letters, each drawn independently from a to z.
std::string randomToken();

// Unpacks the template as the project `typedName` without its blanks, makes that project current, and writes
// its name, a package identifier and the Theos location into its files. Skips what is missing and does not
// check the steps; the project is current in any case. Blocks while unzip and mv run.
void createProject(const std::string& typedName);

// Renames the current project to `typedName` without its blanks: first in the records, even if the rest
// fails, then its folder, every occurrence of the old name in control and Makefile, and its filter list.
void renameProject(const std::string& typedName);

// Deletes the listed project; no project is current afterwards.
void deleteListedProject();

// Deletes one project. The records keep its name even if it is the current one.
void deleteProject(const MaybeText& name);

// Deletes every project but those whose names begin with a dot; no project is current afterwards.
void deleteAllProjects();

// The address under which the file manager shows the listed project.
std::string projectAddress();

// The same for the listed project's packages, or for all packages if it has none.
std::string packagesAddress();

// Deletes the packages of every project.
void deletePackages();

// Copies the folder at `typedPath` into the projects and makes it current. The path is tested as typed, from
// the working directory, and copied from below "/". Returns false and does nothing if nothing is there.
bool importProject(const std::string& typedPath);

// Copies the listed project to `typedPath`, taken below "/var/".
void exportProject(const std::string& typedPath);

// Replaces the listed project's backup by a new one. Returns its path; absent if there is no such project.
MaybeText backUpProject();

// The names of the backups, in the order the file system gives them.
std::vector<std::string> backupNames();

// Replaces the project by its backup, without a question.
void restoreBackup(const std::string& name);

void deleteAllBackups();
