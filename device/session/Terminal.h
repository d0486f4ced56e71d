// A terminal of the device's own, joined to the user's for as long as a shell runs.
#pragma once

#include "core/Descriptor.h"

#include <poll.h>
#include <string>
#include <termios.h>
#include <vector>

namespace device {

// What runs in the device never gets the user's terminal itself, whose input it could fill. While the object
// lives, the user's terminal is in raw mode; key strokes, Control-C among them, go to the device.
class Terminal {
 public:
  // Whether standard input and output are terminals, without which there is nothing to join.
  static bool isAvailable();

  // Throws Refusal.
  Terminal();
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // The device's side, to be closed once the device has it.
  Descriptor& deviceSide() { return deviceSide_; }

  // Adds what to wait for, and serves it after poll().
  void addTo(std::vector<pollfd>& watched) const;
  void serve(const std::vector<pollfd>& watched);
  // The user's window has another size.
  void resize();
  // Shows what the device wrote before it ended.
  void finish();

 private:
  bool showOutput();

  Descriptor ownSide_;
  Descriptor deviceSide_;
  termios before_{};
  // Typed and not yet taken by the device.
  std::string typed_;
  bool isInputOver_ = false;
  bool isOutputOver_ = false;
};

}  // namespace device
