// What the process itself does: write to the system log, survive failed writes, ask for entitlements.
#pragma once

#include <cstddef>
#include <string>

// In bytes. Longer messages are cut off, as the log would refuse them.
inline constexpr std::size_t longestLogLine = 8000;

// Writes one UTF-8 line to syslog(3). Standard error may be a captured log, which holds only what commands
// print. Any thread.
void NSLog(const std::string& line);

// Failed writes return EPIPE or EFBIG instead of killing the process. Commands do not inherit this: builds
// depend on SIGPIPE. Call it once, before the first thread starts.
void surviveRefusedWrites();

// Whether the launcher left a socket for the application at `descriptor`, as LauncherContract.h tells. From
// then on no command gets it.
bool takeLauncherSocket(int descriptor);

// Asks the jailbreak support library at the absolute path `library` for platform entitlements. Null if it is
// absent, the loader's error text if it lacks jb_oneshot_entitle_now, else the library's result unchanged,
// which need not be a valid pointer. Nothing calls it so far: the process relies on setuid(0).
const char* platformize_me(const char* library = "/usr/lib/libjailbreak.dylib");
