// Reaching a process together with everything that it started.
#pragma once

#include <sys/types.h>

// Sends `signal` to `root` and to all its descendants, as /proc shows them. Descendants are stopped before
// they are listed again, so that none slips away by forking meanwhile; a process whose parent has already
// ended is no descendant any more and is not reached.
void signalProcessTree(pid_t root, int signal);
