// First program inside the device: starts the real one with the device's limits and reports how it began and
// ended.
//
// usage: starter REPORT-FD ERROR-FD plain|terminal PROGRAM ARGUMENTS…
// ERROR-FD becomes the program's standard error, since bubblewrap's own messages go elsewhere. With
// "terminal" the program leads a session of its own on the terminal at standard input. Ends with the
// program's status, 128 + n for signal n.
#include "device/guard/StartReport.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using device::StartReport;

// What a build needs is far below these. Where the kernel counts for the user as a whole, half of what the
// host has stays for its other programs.
constexpr struct {
  int resource;
  rlim_t most;
} kLimits[] = {
    {RLIMIT_NPROC, 4096},
    {RLIMIT_SIGPENDING, 1024},
    {RLIMIT_MEMLOCK, 1 << 20},
    {RLIMIT_MSGQUEUE, 0},
    // Descriptors on their way through sockets count for the user; other programs may have 1024 there.
    {RLIMIT_NOFILE, 512},
    {RLIMIT_NICE, 0},
    {RLIMIT_RTPRIO, 0},
    // A core dump would be handed to the host's collector, outside the device. Where that reads from a pipe,
    // the kernel minds no limit but 1.
    {RLIMIT_CORE, 1},
};

void limitResources() {
  for (const auto& [resource, most] : kLimits) {
    rlimit limit{};
    getrlimit(resource, &limit);
    const bool isShared = resource == RLIMIT_NPROC || resource == RLIMIT_SIGPENDING;
    limit.rlim_max = std::min(isShared ? limit.rlim_max / 2 : limit.rlim_max, most);
    limit.rlim_cur = resource == RLIMIT_CORE ? limit.rlim_max : std::min(limit.rlim_cur, limit.rlim_max);
    setrlimit(resource, &limit);
  }
}

void report(int descriptor, StartReport::Kind kind, int value) {
  const StartReport message{kind, value};
  // The launcher's end closes only with the launcher, and then the device ends with it.
  [[maybe_unused]] const ssize_t written = write(descriptor, &message, sizeof message);
}

[[noreturn]] void becomeProgram(bool onTerminal, int errorOutput, int failure, char** arguments) {
  if (onTerminal) {
    // As a login would: what the launcher's own caller ignores is of no concern here.
    for (int number : {SIGINT, SIGQUIT, SIGHUP, SIGTSTP}) signal(number, SIG_DFL);
    setsid();
    ioctl(STDIN_FILENO, TIOCSCTTY, 0);
  }
  dup2(errorOutput, STDERR_FILENO);
  close(errorOutput);
  execvp(arguments[0], arguments);
  const int error = errno;
  [[maybe_unused]] const ssize_t written = write(failure, &error, sizeof error);
  _exit(127);
}

// What a reader of the program's output waits for is the program's end, not ours.
void letGoOfStandardStreams() {
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  if (nothing < 0) return;
  for (int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nothing, stream);
}

int waitFor(pid_t program) {
  int status = 0;
  while (waitpid(program, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 5) return 125;
  const int reports = std::atoi(arguments[1]);
  const int errorOutput = std::atoi(arguments[2]);
  const bool onTerminal = strcmp(arguments[3], "terminal") == 0;
  fcntl(reports, F_SETFD, FD_CLOEXEC);
  // Builds run under the same user: keep them out of this process's descriptors.
  prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
  limitResources();
  int failure[2];
  if (pipe2(failure, O_CLOEXEC) != 0) return 125;
  const pid_t program = fork();
  if (program < 0) {
    report(reports, StartReport::Kind::NotStarted, errno);
    return 125;
  }
  if (program == 0) becomeProgram(onTerminal, errorOutput, failure[1], arguments + 4);
  close(failure[1]);
  close(errorOutput);
  letGoOfStandardStreams();
  int error = 0;
  if (read(failure[0], &error, sizeof error) == static_cast<ssize_t>(sizeof error)) {
    report(reports, StartReport::Kind::NotStarted, error);
    waitFor(program);
    return error == ENOENT ? 127 : 126;
  }
  report(reports, StartReport::Kind::Started, 0);
  const int status = waitFor(program);
  report(reports, StartReport::Kind::Ended, status);
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}
