// Taking the colour sequences out of a build log.
#pragma once

#include <string>
#include <string_view>

// The two builds; the shorter list of the install build is settled.
enum class BuildVariant { Package, Install };

// `log` without the printable part of the known colour sequences and without mv's complaint about missing
// packages. Each pattern is removed once over the whole text, in a fixed order, as that many literal
// replacements would do it; the escape byte before each sequence stays, and so does every sequence that is
// not known.
std::string cleanedLog(std::string_view log, BuildVariant variant);

// Cleans the log file in place. A file that is missing, unreadable or not UTF-8 stays as it is.
void cleanLog(const std::string& path, BuildVariant variant);
