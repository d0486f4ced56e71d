// What a part of a patch is given up with.
#pragma once

#include <stdexcept>

// The message is a clause that says why, for a comment in the source that is written.
class NotUnderstood : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};
