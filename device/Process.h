// Programs that the launcher starts on the host, and the pipes and files that they get.
#pragma once

#include "core/Descriptor.h"
#include "device/Refusal.h"

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <signal.h>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <sys/un.h>
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

// A pair of packet sockets between the launcher and the application.
struct ApplicationSocket {
  Descriptor own;
  // The application gets it under this very number; to be closed here once the device has it.
  Descriptor applicationEnd;
};
// Makes the pair with `number` for the application's end. What cannot be made is empty.
ApplicationSocket connectApplication(int number);
// The address of the socket `name` in the open folder, whose own path may be too long for one.
sockaddr_un addressIn(int folder, const std::string& name);

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
  // As from runToEnd().
  int status = 0;
  // At most 1 MiB of each; what comes after is read and dropped.
  std::string output;
  std::string errors;
};

// Runs the program to its end. Streams that are -1 in `start` are pipes here, and `take` gets what comes on
// STDOUT_FILENO or STDERR_FILENO; if it returns false, or at the time limit, the program gets the signal
// `start.endsBy`, which it must obey. Returns as shellStatus(); 124 if it was stopped, 127 if it could not be
// started. Throws Interrupted, with the program stopped, once an Interruption has noted a signal.
constexpr auto unlimited = std::chrono::milliseconds::max();
using TakeOutput = std::function<bool(int stream, std::string_view piece)>;
int runToEnd(
    ProcessStart start, std::chrono::milliseconds limit = unlimited,
    const TakeOutput& take = [](int, std::string_view) { return true; });

// The same for `words` as in ProcessStart, with what the program prints kept.
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
