// What the starter inside the device tells the launcher about the program that it starts.
#pragma once

#include <cstdint>

namespace device {

// Written whole, one write each, to the descriptor that the launcher gave: first Started or NotStarted; after
// Started, when the program has ended, Ended.
struct StartReport {
  enum class Kind : std::int32_t { Started = 1, NotStarted = 2, Ended = 3 };
  Kind kind;
  // Started: 0. NotStarted: errno. Ended: the status as from waitpid().
  std::int32_t value;
};

}  // namespace device
