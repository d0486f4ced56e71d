// What a test that belongs to the table of script/faults has to say there.
#pragma once

#include <cstdio>
#include <string>
#include <unistd.h>

// Where the program's output went at its start: builds turn the standard streams to their log.
inline const int faultReports = dup(STDOUT_FILENO);

// One row. `fired` counts the tries in which the fault was really met; where nothing is broken it is "-".
inline void reportFault(const std::string& fault, int tries, const std::string& fired,
                        const std::string& outcome) {
  dprintf(faultReports, "fault|%s|%d|%s|%s\n", fault.c_str(), tries, fired.c_str(), outcome.c_str());
}
