// A terminal of the device's own, for what the caller runs on one.
#pragma once

#include "core/Descriptor.h"

#include <poll.h>
#include <string>
#include <termios.h>
#include <vector>

// What runs in the device never gets the user's terminal itself, whose input it could fill.
//
// At first nothing is read from the user's terminal, which stays as it is. Joined, it is in raw mode, and key
// strokes, Control-C among them, go to the device. That is so from the start where standard input and output
// both are the terminal, and otherwise (a pager may read from it at the other end of a pipe) as soon as the
// program wants to read from it: as a background job it is stopped then.
class Terminal {
 public:
  // Whether one of the standard streams is a terminal.
  static bool isAvailable();

  // Throws Refusal.
  Terminal();
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // The device's side, to be closed once the device has it.
  Descriptor& deviceSide() { return deviceSide_; }
  // Copies of our side, which gives what the device writes, and of the user's terminal.
  Descriptor output() const;
  Descriptor usersTerminal() const;

  bool wantsJoining() const { return wantsJoining_; }
  bool isJoined() const { return isJoined_; }
  // Whether the user's shell lets the caller read from the terminal.
  bool isInForeground() const;
  void join();
  void leave();

  // Adds what to wait for, and serves it after poll(). False where the caller lost the terminal.
  void addTo(std::vector<pollfd>& watched) const;
  bool serve(const std::vector<pollfd>& watched);
  // The user's window has another size.
  void resize();

 private:
  Descriptor ownSide_;
  Descriptor deviceSide_;
  // Of the user's terminal; the one for reading may be missing.
  Descriptor users_;
  Descriptor keys_;
  termios before_{};
  // Typed and not yet taken by the device.
  std::string typed_;
  bool wantsJoining_ = false;
  bool isJoined_ = false;
  bool wasJoined_ = false;
  bool isInputOver_ = false;
};
