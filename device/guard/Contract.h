// What the launcher, the filter and the programs inside the device agree on.
#pragma once

#include <cstdint>

namespace guard {

// The home folder of every command.
inline constexpr const char* homeOfCommands = "/var/mobile";
// The application's home folder, read-only and empty, which the guard replaces for commands. The interface's
// libraries read settings there (X resources, key compositions, pointers, the display's cookie), and builds
// can write to the other.
inline constexpr const char* homeOfApplication = "/.host/empty";

// Puts this process under the system call filter, for what it then becomes, unless it is already; marks all
// descriptors but the standard streams close-on-exec and takes what is the application's out of the
// environment. Where that fails it says so and returns false, and the caller ends with `refused`.
bool putOn();
constexpr int refused = 126;

// prctl() has no such operation, so a kernel without our filter answers EINVAL, and so does another filter.
constexpr unsigned long probeOperation = 0x54574742;
constexpr unsigned long probeArgument = 0x67756172;
// Not an errno value of the kernel's; below its limit of 4095.
constexpr int probeAnswer = 2787;

}  // namespace guard

// From the starter inside the device to the launcher, in one write each: first Started or NotStarted; after
// Started, when the program has ended, Ended, and when all that it left running has been ended as well,
// Alone. On a terminal Stopped may come any number of times before that.
struct StartReport {
  enum class Kind : std::int32_t { Started = 1, NotStarted = 2, Ended = 3, Stopped = 4, Alone = 5 };
  Kind kind;
  // Started and Alone: 0. NotStarted: errno. Ended: the status as from waitpid(). Stopped: the signal.
  std::int32_t value;
};

// From the launcher to the starter, over another descriptor: first Begin, and the others only where there is
// a terminal. The starter ends where the launcher ends before that.
struct StartOrder {
  // Begin: the program may start, with a value of 1 with reduced motion. Continue: a stopped program goes on,
  // with a value of 1 in the foreground of its terminal, with 0 in the background. Signal: its process group
  // gets the signal `value`.
  enum class Kind : std::int32_t { Continue = 1, Signal = 2, Begin = 3 };
  Kind kind;
  std::int32_t value;
};

// The starter's argument that says whether to put the filter on.
inline constexpr const char* filteredStart = "filtered";
inline constexpr const char* unfilteredStart = "unfiltered";

// The starter's argument that says which streams the program gets.
inline constexpr const char* plainStreams = "plain";
inline constexpr const char* terminalInForeground = "foreground";
inline constexpr const char* terminalInBackground = "background";
