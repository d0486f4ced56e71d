// What the starter inside the device and the launcher tell each other about the program that it starts.
#pragma once

#include <cstdint>

namespace device {

// Written whole, one write each, to the descriptor that the launcher gave: first Started or NotStarted; after
// Started, when the program has ended, Ended. On a terminal Stopped may come any number of times before that.
struct StartReport {
  enum class Kind : std::int32_t { Started = 1, NotStarted = 2, Ended = 3, Stopped = 4 };
  Kind kind;
  // Started: 0. NotStarted: errno. Ended: the status as from waitpid(). Stopped: the signal.
  std::int32_t value;
};

// The launcher's side, read from another descriptor where there is a terminal.
struct StartOrder {
  // Continue: a stopped program goes on, with a value of 1 in the foreground of its terminal, with 0 in the
  // background. Signal: its process group gets the signal `value`.
  enum class Kind : std::int32_t { Continue = 1, Signal = 2 };
  Kind kind;
  std::int32_t value;
};

// How the starter is told which streams the program gets.
inline constexpr const char* kPlainStreams = "plain";
inline constexpr const char* kTerminalInForeground = "foreground";
inline constexpr const char* kTerminalInBackground = "background";

}  // namespace device
