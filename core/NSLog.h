// The system log: one line for whoever looks after the machine, never for the user.
#pragma once

#include <cstddef>
#include <string>

// What the log keeps of a line, in bytes: a longer message would be refused as a whole.
inline constexpr std::size_t longestLogLine = 8000;

// Writes one line to syslog(3), never to standard error: the standard streams may be a captured log, which
// holds only what commands print. `line` is UTF-8 and is taken as it is, not as a format. Any thread.
void NSLog(const std::string& line);
