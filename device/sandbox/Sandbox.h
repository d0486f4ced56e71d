// Runs one program in the device and tells how that ended.
#pragma once

#include "device/sandbox/Arguments.h"
#include "device/session/Relay.h"

#include <filesystem>
#include <string>
#include <vector>

namespace device {

class Opener;

struct Program {
  // As the device sees it; the first is looked up in PATH.
  std::vector<std::string> command;
  Relay::Streams streams = Relay::Streams::Caller;
};

struct Ending {
  enum class Kind { SetUpFailed, NotStarted, Exited, Killed, Interrupted };
  Kind kind;
  // NotStarted: errno. Exited: the status. Killed, Interrupted: the signal, which the program or the launcher
  // got.
  int value = 0;
  // SetUpFailed: a sentence.
  std::string message;
};

// To be called from the main thread of a process without other threads: the device ends with that thread.
// Returns when no process of the device is left. `request.statusOutput` is filled in here. `opener`, which
// may be null, serves the program meanwhile and nobody else.
Ending runInDevice(const std::filesystem::path& bubblewrap, Request request, const Program& program,
                   Opener* opener = nullptr);

}  // namespace device
