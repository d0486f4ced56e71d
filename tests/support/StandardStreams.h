// Restores a test's standard streams after code that redirects them for good.
#pragma once

#include <array>
#include <cstdio>

#include <gtest/gtest.h>

// Prints failures to the original standard output, whatever the streams are redirected to.
class FailureReport : public testing::EmptyTestEventListener {
 public:
  void OnTestPartResult(const testing::TestPartResult& result) override {
    if (!result.failed()) return;
    const char* const file = result.file_name() != nullptr ? result.file_name() : "unknown file";
    dprintf(output_, "%s:%d: %s\n", file, result.line_number(), result.message());
  }

 private:
  const int output_ = dup(STDOUT_FILENO);
};

inline const bool failuresAreReported = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new FailureReport);
  return true;
}();
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
