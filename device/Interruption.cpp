#include "device/Interruption.h"

#include <initializer_list>

namespace device {
namespace {

volatile sig_atomic_t came = 0;

void setHandlers(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  for (int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) sigaction(number, &action, nullptr);
}

}  // namespace

Interruption::Interruption() {
  came = 0;
  setHandlers([](int number) { came = number; });
}

Interruption::~Interruption() {
  setHandlers(SIG_DFL);
}

void Interruption::check() {
  if (came != 0) throw Interrupted{came};
}

}  // namespace device
