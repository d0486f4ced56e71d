#include "confinement/Attempt.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Control = Attempt::Control;

constexpr const char* kExhaustion = "The machine cannot be exhausted";

// More than the device allows; a normal build never comes near.
constexpr int kProcesses = 4200;
constexpr off_t kMemoryFile = off_t{600} << 20;

bool makesTooManyProcesses() {
  return inChild([] {
    // They wait for the end of this pipe, which comes with this process.
    int end[2];
    if (pipe(end) != 0) return false;
    int made = 0;
    for (; made < kProcesses; ++made) {
      const pid_t child = fork();
      if (child < 0) break;
      if (child == 0) {
        close(end[1]);
        char byte = 0;
        [[maybe_unused]] const ssize_t ended = read(end[0], &byte, 1);
        _exit(0);
      }
    }
    const int error = errno;
    close(end[1]);
    while (wait(nullptr) > 0) {
    }
    errno = error;
    return made == kProcesses;
  });
}

bool fillsMemory(const char* folder) {
  const int file = open(folder, O_TMPFILE | O_WRONLY, 0600);
  const bool through = file >= 0 && fallocate(file, 0, 0, kMemoryFile) == 0;
  const int error = errno;
  if (file >= 0) close(file);
  errno = error;
  return through;
}

}  // namespace

std::vector<Attempt> attemptsOnTheMachine() {
  return {
      {kExhaustion, "4200 processes at once", Control::Machine, makesTooManyProcesses},
      {kExhaustion, "600 MiB in /tmp", Control::Machine, [] { return fillsMemory("/tmp"); }},
      {kExhaustion, "600 MiB of shared memory", Control::Machine, [] { return fillsMemory("/dev/shm"); }},
      {kExhaustion, "a core dump for the host's collector", Control::Machine,
       [] {
         rlimit limit{};
         getrlimit(RLIMIT_CORE, &limit);
         limit.rlim_cur = 1 << 20;
         return setrlimit(RLIMIT_CORE, &limit) == 0;
       }},
  };
}
