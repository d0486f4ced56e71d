// An open file descriptor that closes itself.
#pragma once

#include <unistd.h>
#include <utility>

namespace device {

// Movable, not copyable; -1 where nothing is open.
class Descriptor {
 public:
  Descriptor() = default;
  // Takes ownership.
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() { close(); }

  int get() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }
  void close() {
    if (number_ >= 0) ::close(std::exchange(number_, -1));
  }

 private:
  int number_ = -1;
};

}  // namespace device
