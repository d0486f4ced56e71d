// What the application gets of the caller's desktop: one display, what signs in to it, and reduced motion.
#pragma once

#include "device/sandbox/Environment.h"

#include <chrono>
#include <filesystem>
#include <string>

// Whether Qt on this host can use Wayland at all.
enum class WaylandSupport { Missing, Present };
WaylandSupport waylandSupport();

struct Display {
  enum class Kind {
    Wayland,
    X11,
    // The caller has chosen a platform of Qt that needs no display.
    None,
  };
  Kind kind = Kind::None;
  // The socket on the host.
  fs::path socket;
  // X11: the display's number, as in ":0".
  std::string number;
};

// Throws Refusal if there is no display, or only one across the network.
Display findDisplay(const Environment& caller, WaylandSupport support);

// Where the device shows the display's socket.
std::string socketInDevice(const Display& display);

// X11: a file with the one entry that signs in to this display, valid under any host name; empty where the
// caller has none. Reads the caller's file, so it is called before root becomes another user.
Descriptor authorityFor(const Display& display);

// Adds what tells Qt where the display is. `authority` is a descriptor of the application's, or -1.
void addDisplay(Environment& environment, const Display& display, int authority);

// Asks the settings of the two common desktops, in files below `home` and of the caller's session; no answer
// within `patience` means no. To be called as the device's user: another's settings are not its own.
bool prefersReducedMotion(const Environment& caller, const fs::path& home,
                          std::chrono::milliseconds patience = std::chrono::seconds(2));
