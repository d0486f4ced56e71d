// What the launcher says to the user, and its one kind of failure: a sentence.
#pragma once

#include "core/Descriptor.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <stdexcept>
#include <string>

// what() is one whole sentence that says what is wrong and, where something can be done, what to do.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Says a whole sentence on standard error.
inline void say(const std::string& sentence) {
  std::cerr << "tweakbench: " << sentence << "\n";
}

// Refuses with `sentence`, which ends in a colon and gets the words for errno.
[[noreturn]] inline void refuseWithError(const std::string& sentence) {
  throw Refusal(sentence + " " + std::strerror(errno) + ".");
}

// What was opened, for a call that may have failed; then refuses like that.
[[nodiscard]] inline Descriptor orRefuse(Descriptor opened, const std::string& sentence) {
  if (!opened) refuseWithError(sentence);
  return opened;
}
