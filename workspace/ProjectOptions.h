// Taking projects in and out, and where their folders are shown.
#pragma once

#include <string>

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
