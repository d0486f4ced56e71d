// Making a project out of the shipped template.
#pragma once

#include <string>

// Eight letters, each drawn independently from a to z.
std::string randomToken();

// Unpacks the template as the project `typedName` less its blanks, makes that project current, and puts its
// name, a package identifier of its own and the Theos location into its files. No step looks at whether the
// one before it succeeded: whatever is missing is skipped, and the project is current even then. Blocks while
// unzip and mv run.
void createProject(const std::string& typedName);
