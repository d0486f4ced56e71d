// Programs that the launcher starts on the host, and the pipes and files that they get.
#pragma once

#include "core/Descriptor.h"

#include <chrono>
#include <map>
#include <optional>
#include <signal.h>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

// All descriptors here are close-on-exec.
struct Pipe {
  Descriptor readEnd;
  Descriptor writeEnd;
};

// Throws Refusal.
Pipe makePipe();
// A file in memory with this content, to be read from its beginning. Throws Refusal.
Descriptor inMemory(std::string_view content);
// /dev/null, for reading and writing. Throws Refusal.
Descriptor openNothing();
// Another descriptor for the same file, above the standard streams; empty where there can be none.
Descriptor copyOf(int descriptor);
// Becomes readable when the child has ended.
Descriptor endOf(pid_t child);

struct ProcessStart {
  // The first is the program's path; the program gets the file name alone.
  std::vector<std::string> words;
  // NAME=VALUE each; absent for the launcher's own.
  std::optional<std::vector<std::string>> environment{};
  // Its standard streams; -1 for /dev/null, the stream's own number for the launcher's.
  int input = -1;
  int output = -1;
  int errors = -1;
  // Descriptors that it gets besides, under the same numbers.
  std::vector<int> passed{};
  // The signal that it gets when the thread that started it ends; 0 for none.
  int endsBy = 0;
  enum class Place { OfLauncher, OwnGroup, OwnSession };
  Place place = Place::OfLauncher;
  // Whether it gets a new session keyring instead of the caller's.
  bool hasOwnKeys = false;
};

// Starts the program with no signal blocked. Returns the child, which the caller waits for, or -1 with errno
// where it cannot be started.
pid_t spawn(const ProcessStart& start);

// 128 + n if signal n ended the child, as a shell counts.
int shellStatus(int status);

struct Captured {
  // As shellStatus(); 124 if it was stopped at the time limit, 127 if it could not be started.
  int status = 0;
  // At most 1 MiB of each; what comes after is read and dropped.
  std::string output;
  std::string errors;
};

// Runs `words` as in ProcessStart and keeps what the program prints. At the time limit it gets SIGTERM, which
// it must obey. Throws Interrupted, with the program stopped, once an Interruption has noted a signal.
Captured capture(const std::vector<std::string>& words, std::chrono::milliseconds limit);

// Thrown between two steps of something long; `signal` is what the process is to end with.
struct Interrupted {
  int signal;
};

// While an object lives, SIGINT, SIGTERM, SIGHUP and SIGQUIT are only noted, so that the launcher can tidy up
// first; one that the caller ignores stays ignored. One at a time.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  // Whether one of the signals has come since an object was last made.
  static bool hasCome();
  // Throws Interrupted once one of the signals has come.
  static void check();

 private:
  std::map<int, struct sigaction> before_;
};
