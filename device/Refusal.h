// The launcher's one kind of failure: a sentence for the user.
#pragma once

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

// what() is one whole sentence that says what is wrong and, where something can be done, what to do.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Refuses with `sentence`, which ends in a colon and gets the words for errno.
[[noreturn]] inline void refuseWithError(const std::string& sentence) {
  throw Refusal(sentence + " " + std::strerror(errno) + ".");
}
