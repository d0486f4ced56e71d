#include "core/RefusedWrites.h"

#include <csignal>
#include <initializer_list>

void surviveRefusedWrites() {
  for (const int number : {SIGPIPE, SIGXFSZ}) {
    struct sigaction action {};
    // A handler and not SIG_IGN, which commands would inherit.
    action.sa_handler = [](int) {};
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
  }
}
