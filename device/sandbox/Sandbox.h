// Runs one program in the device and tells how that ended.
#pragma once

#include "device/sandbox/Arguments.h"
#include "device/session/Relay.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class Opener;
class SingleWindow;
class SystemLog;

struct Program {
  // As the device sees it; the first is looked up in PATH.
  std::vector<std::string> command;
  Relay::Streams streams = Relay::Streams::Caller;
  // Whether it gets the guard's filter at once. What it starts by /bin/sh gets it in any case.
  bool isFiltered = false;
  // Called while bubblewrap makes the device; the program starts when it has returned whether the desktop
  // asks for reduced motion. Throws Refusal.
  std::function<bool()> beforeStart{};
};

// How the program ended.
struct Ending {
  // As a shell counts: 127 if there is no such program, 126 if it could not be started, 128 + n for signal n.
  int status;
  // What the user should know, to be put behind the program's name; empty if the program has said all.
  std::string complaint{};
  // The signal that ended the launcher's part of it, by which the launcher ends, too; or 0.
  int interruption = 0;
};

// To be called from the main thread of a process without other threads: the device ends with that thread.
// Returns when no process of the device is left. `request.statusOutput` is filled in here. Meanwhile `log` is
// passed on, and `opener` and `window` serve the program if they are connected. Throws Refusal if the device
// could not be set up.
Ending runInDevice(const fs::path& bubblewrap, Request request, const Program& program, SystemLog& log,
                   Opener& opener, SingleWindow& window);

// The kernel's switches for user namespaces; absent where the kernel has none.
struct NamespaceSettings {
  std::optional<long> unprivilegedClone;
  std::optional<long> maximum;
  std::optional<long> appArmorRestriction;
};

NamespaceSettings readNamespaceSettings();

// Begins what is said where the system refuses a device.
inline constexpr const char* setUpFailed = "The device could not be set up: ";

// `message` is what bubblewrap wrote, possibly nothing. The answer says what to do where something can be
// done.
std::string explainFailure(const std::string& message, const NamespaceSettings& settings);
