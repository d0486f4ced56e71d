// One window for a device: a second start brings the window of the first one forward.
#pragma once

#include "device/Process.h"

#include <optional>
#include <poll.h>
#include <string>
#include <string_view>
#include <vector>

// The window belongs to the launcher that holds the lock DEVICE/window.lock. It listens at the socket
// DEVICE/window, which nothing in the device can see, and passes calls on to its application over a pair of
// sockets. The application asks over the same pair to be started again. It may have been taken over: nothing
// that it sends does more than that.
class SingleWindow {
 public:
  // `device`: DEVICE, which stays open as long as the object lives.
  explicit SingleWindow(int device) : device_(device) {}

  // True once the window is this launcher's; false once another one has brought its window forward. `token`
  // is the desktop's leave to do so, or empty. Throws Refusal if the other launcher does not answer within
  // some seconds.
  bool claim(std::string_view token);

  // Before each start of the application: makes the end that it gets under this very number.
  void connect();
  Descriptor& applicationEnd() { return sockets_.applicationEnd; }
  // Whether the application has asked to be started again since connect().
  bool isToStartAgain() const { return geometry_.has_value(); }

  // Adds what to wait for, and serves it after poll().
  void addTo(std::vector<pollfd>& watched) const;
  void serve();

 private:
  bool hasLocked();
  void listen();
  bool callOther(std::string_view token) const;
  // Sends the application a message; false where there is none that takes it.
  bool tell(char kind, std::string_view rest) const;

  int device_;
  Descriptor lock_;
  Descriptor listener_;
  // A second start that has not said yet what it wants.
  Descriptor caller_;
  ApplicationSocket sockets_;
  // Of the window that is to come again.
  std::optional<std::string> geometry_;
};

// Whether `token` may be handed on: printable ASCII, and not too long.
bool isActivationToken(std::string_view token);
