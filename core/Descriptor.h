// A file descriptor that closes itself.
#pragma once

#include <unistd.h>
#include <utility>

// Holds one descriptor or none (-1). Movable, not copyable.
class Descriptor {
 public:
  Descriptor() = default;
  // Takes ownership.
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { close(); }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      close();
      number_ = std::exchange(other.number_, -1);
    }
    return *this;
  }

  int get() const { return number_; }
  explicit operator bool() const { return number_ != -1; }
  void close() {
    if (number_ != -1) ::close(std::exchange(number_, -1));
  }

 private:
  int number_ = -1;
};
