// Gives a test its standard streams back after code that redirects them for good.
#pragma once

#include <array>
#include <cstdio>
#include <unistd.h>

class StandardStreams {
 public:
  StandardStreams() {
    std::fflush(nullptr);
    for (int stream = 0; stream < 3; ++stream) saved_[static_cast<std::size_t>(stream)] = dup(stream);
  }
  ~StandardStreams() {
    std::fflush(nullptr);
    for (int stream = 0; stream < 3; ++stream) {
      dup2(saved_[static_cast<std::size_t>(stream)], stream);
      close(saved_[static_cast<std::size_t>(stream)]);
    }
    std::clearerr(stdin);
  }
  StandardStreams(const StandardStreams&) = delete;
  StandardStreams& operator=(const StandardStreams&) = delete;

 private:
  std::array<int, 3> saved_{};
};
