#include "device/sandbox/Interruption.h"

#include <initializer_list>

namespace device {
namespace {

volatile sig_atomic_t came = 0;

}  // namespace

Interruption::Interruption() {
  came = 0;
  struct sigaction note {};
  note.sa_handler = [](int number) { came = number; };
  // The signal is asked for between two steps; none of them is to fail for it.
  note.sa_flags = SA_RESTART;
  for (int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    struct sigaction& before = before_[number];
    sigaction(number, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(number, &note, nullptr);
  }
}

Interruption::~Interruption() {
  for (const auto& [number, before] : before_) sigaction(number, &before, nullptr);
}

bool Interruption::hasCome() {
  return came != 0;
}

void Interruption::check() {
  if (came != 0) throw Interrupted{came};
}

}  // namespace device
