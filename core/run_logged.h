// Capturing what a command line prints.
#pragma once

#include "core/Text.h"

#include <string>

// Re-points the process's own standard output, error and input, in this order, onto the file `log`, each
// opened with "a+" and made when missing. Process-wide, not locked, and never undone: whatever runs later
// writes there too, until the next redirection. One captured run at a time; the interface sees to that.
void redirectStandardStreams(const std::string& log);

// Takes what an earlier run printed away: removes `log` or, where its folder cannot be changed, empties it.
// False where it still holds something.
bool discardLog(const std::string& log);

// The captured run: discards `log`, redirects the standard streams onto it, runs `cmd` and waits for it, and
// returns what the log then holds; absent when it cannot be read, is not UTF-8, or could not be discarded.
// The log stays where it is.
MaybeText run_logged(const std::string& cmd, const std::string& log);
