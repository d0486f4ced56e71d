// Copies one stream while the launcher does other things.
#pragma once

#include "core/Descriptor.h"

#include <memory>

// Copies from `source` to `target` in a thread of its own until the source ends or nobody takes the target
// any more; then both are closed, so that the programs at the other ends notice. Neither is changed: whether
// reading or writing blocks is the caller's to say. A write that blocks for ever blocks the thread alone; it
// ends with the process.
class Pump {
 public:
  enum class Bytes {
    // Between pipes moved without a copy.
    AsTheyAre,
    // Control characters but line ends and tabs made visible.
    Visible,
    // The same, with the sequences of colours and carriage returns.
    Coloured,
    // From a terminal of the device's to the user's. While the user's terminal itself puts a carriage return
    // before each line end, those that the device's terminal put there are taken out again.
    ToTerminal,
    // The source is left open and its place set back by what was not taken, see giveBack().
    GivenBack,
  };

  Pump(Descriptor source, Descriptor target, Bytes bytes);
  // Leaves the thread to itself where it has not ended.
  ~Pump() = default;
  Pump(Pump&&) = default;
  Pump& operator=(Pump&&) = default;

  // Becomes readable when everything is copied.
  int end() const;
  // Ends the copying between two reads.
  void stop();
  // For GivenBack, when the copying has ended and nobody reads any more: sets the source's place back by what
  // the target's reader left. `reader` is the pipe's end for reading.
  void giveBack(int reader);

 private:
  struct Copying;
  std::shared_ptr<Copying> copying_;
};
