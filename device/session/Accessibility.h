// Lets screen readers of the host reach the application, and the application nothing but them.
#pragma once

#include "device/sandbox/Arguments.h"

#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

// A proxy in front of two buses of the host, which lets through what an application needs to be read: on the
// session bus, the question where the accessibility bus is and whether anybody reads; on that one, signing in
// to its registry. Nothing else on them can be reached. Runs as long as the object lives, and no longer than
// the launcher.
class Accessibility {
 public:
  // Null where there is no session, no such bus, or no proxy program: the application then runs without.
  // To be called as the device's user: the bus lets in nobody but its owner.
  static std::unique_ptr<Accessibility> join(const Environment& caller);

  ~Accessibility();

  // Where the application looks for them by itself.
  std::vector<Shown> sockets() const;

 private:
  Accessibility() = default;

  // Ends when `alive_` is closed.
  pid_t proxy_ = -1;
  Descriptor process_;
  Descriptor alive_;
  std::string folder_;
  std::string busPath_;
};

struct BusAddress {
  std::string whole;
  // Of its socket, on the host; the device shows the proxy's there.
  std::string path;
};

// The address out of what a call of GetAddress prints; absent if that is none, or if its socket has no path
// or one that the device cannot show.
std::optional<BusAddress> busAddress(const std::string& printed);
