// The standard streams of what runs in the device, joined with the caller's.
#pragma once

#include "device/session/Terminal.h"

#include <memory>
#include <optional>
#include <poll.h>
#include <vector>

class Pump;

// Nothing in the device gets a descriptor of the caller's: under /proc/self/fd it could open the file anew,
// for writing, or the folder with all that is in it. It gets pipes, and for a terminal one of the device's
// own. What is not read of a file is given back, so that a script's next command finds it; of a pipe it
// cannot be.
class Relay {
 public:
  enum class Bytes;
  enum class Streams {
    // All of the caller's.
    Caller,
    CallerWithoutInput,
    // No input; output goes to the caller's standard error, control characters made visible.
    Errors,
    // The same, but as it is, and a terminal gets no control characters except those of colours.
    Printed,
  };

  // Makes the device's ends; to be used once, in a process of which nothing else uses standard input and
  // output. Throws Refusal.
  explicit Relay(Streams streams);
  Relay(const Relay&) = delete;
  Relay& operator=(const Relay&) = delete;

  // The device's ends, open until start().
  int input() const { return input_.get(); }
  int output() const { return output_.get(); }
  int errors() const { return errors_.get(); }
  // Null where the caller has none.
  Terminal* terminal() { return terminal_ ? &*terminal_ : nullptr; }

  // Begins to copy, when the device has its ends. Throws Refusal.
  void start();
  // The outputs that have not gone out in full; each becomes readable when it has.
  std::vector<pollfd> undelivered() const;
  // When nothing of the device runs any more: gives back what it has not read.
  void finish();

 private:
  void makeInput();
  // The device's end of a pipe or terminal whose other end leads to the caller's `stream`.
  Descriptor makeOutput(int stream, Bytes bytes);

  Descriptor input_;
  Descriptor output_;
  Descriptor errors_;
  std::optional<Terminal> terminal_;
  std::shared_ptr<Pump> inward_;
  // Of an input that is given back, to count what the device left.
  Descriptor reader_;
  std::vector<std::shared_ptr<Pump>> outward_;
};
