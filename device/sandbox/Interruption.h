// Notes that somebody wants the launcher to end, so that it can tidy up first.
#pragma once

#include <map>
#include <signal.h>

namespace device {

// Thrown between two steps of something long; `signal` is what the process is to end with.
struct Interrupted {
  int signal;
};

// While an object lives, SIGINT, SIGTERM, SIGHUP and SIGQUIT are only noted, or still ignored where the
// caller has them ignored. One at a time.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  // Whether one of the signals has come since an object was last made.
  static bool hasCome();
  // Throws Interrupted once one of the signals has come.
  static void check();

 private:
  std::map<int, struct sigaction> before_;
};

}  // namespace device
