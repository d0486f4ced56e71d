// Runs a program and keeps what it prints.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace device {

struct Captured {
  // As a shell tells it: 128 + n if signal n killed it. 124 if it was stopped at the time limit.
  int status = 0;
  // At most 1 MiB of each; what comes after is read and dropped.
  std::string output;
  std::string errors;
};

// Runs `words`, whose first is a path, with the caller's environment and no input. At the time limit the
// program gets SIGTERM, which it must obey. Throws Refusal where it could not be started at all, and
// Interrupted, with the program stopped, once an Interruption has noted a signal.
Captured capture(const std::vector<std::string>& words, std::chrono::milliseconds limit);

}  // namespace device
