// The error of a dialog that is used in a way in which it cannot be used.
#pragma once

#include <stdexcept>

// what() is the message of the check that failed.
class InternalInconsistency : public std::logic_error {
 public:
  using std::logic_error::logic_error;
};
