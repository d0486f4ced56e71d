// Rows of the table of script/faults.
#pragma once

#include <cstdio>
#include <string>
#include <unistd.h>

// The original standard output, since builds redirect the standard streams.
inline const int faultReports = dup(STDOUT_FILENO);

// One row. `fired` counts the tries in which the fault really occurred; "-" if nothing is broken.
inline void reportFault(const std::string& fault, int tries, const std::string& fired,
                        const std::string& outcome) {
  dprintf(faultReports, "fault|%s|%d|%s|%s\n", fault.c_str(), tries, fired.c_str(), outcome.c_str());
}
