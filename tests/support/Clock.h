// A clock that stands still until the test turns it. Timers and motion of the event loop follow it.
#pragma once

#include <atomic>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

// During its lifetime; afterwards the clock goes on from there. Nothing may wait for a time meanwhile.
class HeldClock {
 public:
  HeldClock() {
    held = read();
    isHeld = true;
  }
  ~HeldClock() {
    isHeld = false;
    ahead += held - read();
  }
  HeldClock(const HeldClock&) = delete;
  HeldClock& operator=(const HeldClock&) = delete;

  static void turn(long milliseconds) { held += milliseconds * 1'000'000; }
  static bool isHeldNow() { return isHeld; }
  // Nanoseconds of CLOCK_MONOTONIC as the program sees it.
  static long read() {
    timespec now{};
    syscall(SYS_clock_gettime, CLOCK_MONOTONIC, &now);
    return isHeld ? held.load() : now.tv_sec * 1'000'000'000 + now.tv_nsec + ahead;
  }

 private:
  // Other threads ask for the time, too.
  static inline std::atomic<bool> isHeld = false;
  static inline std::atomic<long> held = 0;
  static inline std::atomic<long> ahead = 0;
};

// The program's own definition comes before the C library's.
extern "C" [[gnu::used]] inline int clock_gettime(clockid_t clock, timespec* time) noexcept {
  if (clock != CLOCK_MONOTONIC) return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
  const long now = HeldClock::read();
  *time = {now / 1'000'000'000, now % 1'000'000'000};
  return 0;
}
