// First program inside the device: starts the real one with the device's limits and reports how it began and
// ended.
//
// usage: starter REPORTS ORDERS INPUT OUTPUT ERRORS plain|foreground|background filtered|unfiltered
// PROGRAM ARGUMENTS...
// The numbers are descriptors; INPUT, OUTPUT and ERRORS become the program's standard streams. Unless
// "plain", the terminal at standard output is made the program's, which is a job in its foreground or
// background. Ends with the program's status, 128 + n for signal n.
#include "core/LauncherContract.h"
#include "device/guard/Contract.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// What a build needs is far below these. Where the kernel counts for the user as a whole, half of what the
// host has stays for its other programs.
constexpr struct {
  int resource;
  rlim_t most;
} limits[] = {
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
  for (const auto& [resource, most] : limits) {
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

// Everything about the program's start that its process needs.
struct Start {
  int streams[3];
  bool onTerminal;
  bool inForeground;
  bool isFiltered;
  char** words;
  // The error that kept the program from starting; 0 if none did.
  volatile int failure;
};

// In the child, which has the parent's memory until it becomes the program.
[[noreturn]] void becomeProgram(Start& start) {
  if (start.onTerminal) {
    // A job of its own, which can be stopped: the leader of a session never is.
    setpgid(0, 0);
    if (start.inForeground) tcsetpgrp(STDOUT_FILENO, getpid());
    // As a login would: what the launcher's own caller ignores is of no concern here.
    for (int number : {SIGINT, SIGQUIT, SIGHUP, SIGTSTP, SIGTTIN, SIGTTOU}) signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
  }
  for (int stream = 0; stream < 3; ++stream) dup2(start.streams[stream], stream);
  for (int given : start.streams) close(given);
  if (start.isFiltered && !guard::putOn()) _exit(guard::refused);
  execvp(start.words[0], start.words);
  start.failure = errno;
  _exit(127);
}

// Reaps orphans too: as zombies they would still look alive to a program that waits for their end.
int waitFor(pid_t program) {
  int status = 0;
  for (pid_t ended = 0; ended != program && (ended >= 0 || errno == EINTR);) ended = waitpid(-1, &status, 0);
  return status;
}

void follow(const StartOrder& order, pid_t program) {
  const pid_t job = getpgid(program);
  if (job <= 0) return;
  if (order.kind == StartOrder::Kind::Continue) tcsetpgrp(STDOUT_FILENO, order.value == 1 ? job : getpgrp());
  kill(-job, order.kind == StartOrder::Kind::Signal ? order.value : SIGCONT);
}

// Where there is a terminal: also tells of stops and takes orders. SIGCHLD is blocked.
int serveUntilEnd(pid_t program, int reports, int orders) {
  sigset_t child;
  sigemptyset(&child);
  sigaddset(&child, SIGCHLD);
  const int changes = signalfd(-1, &child, SFD_CLOEXEC | SFD_NONBLOCK);
  while (true) {
    int status = 0;
    while (const pid_t changed = waitpid(-1, &status, WUNTRACED | WNOHANG)) {
      if (changed < 0) break;
      if (changed != program) continue;
      if (!WIFSTOPPED(status)) return status;
      report(reports, StartReport::Kind::Stopped, WSTOPSIG(status));
    }
    pollfd watched[] = {{changes, POLLIN, 0}, {orders, POLLIN, 0}};
    poll(watched, 2, -1);
    signalfd_siginfo change{};
    while (read(changes, &change, sizeof change) > 0) {
    }
    StartOrder order{};
    if ((watched[1].revents & POLLIN) != 0 && read(orders, &order, sizeof order) == sizeof order)
      follow(order, program);
  }
}

// Kills all of the device's own PID namespace but its first process and this one, which reaps the others.
void endTheRest() {
  kill(-1, SIGKILL);
  while (waitpid(-1, nullptr, __WALL) > 0 || errno == EINTR) {
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 9) return 125;
  const int reports = std::atoi(arguments[1]);
  const int orders = std::atoi(arguments[2]);
  Start start{};
  for (int stream = 0; stream < 3; ++stream) start.streams[stream] = std::atoi(arguments[3 + stream]);
  start.onTerminal = strcmp(arguments[6], plainStreams) != 0;
  start.inForeground = strcmp(arguments[6], terminalInForeground) == 0;
  start.isFiltered = strcmp(arguments[7], filteredStart) == 0;
  start.words = arguments + 8;
  fcntl(reports, F_SETFD, FD_CLOEXEC);
  fcntl(orders, F_SETFD, FD_CLOEXEC);
  // Builds run under the same user: keep them out of this process's descriptors.
  prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
  prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0);
  limitResources();
  if (start.onTerminal) {
    setsid();
    ioctl(STDOUT_FILENO, TIOCSCTTY, 0);
    // Only jobs in the foreground may say which one that is.
    signal(SIGTTOU, SIG_IGN);
    sigset_t child;
    sigemptyset(&child);
    sigaddset(&child, SIGCHLD);
    sigprocmask(SIG_BLOCK, &child, nullptr);
  }
  StartOrder begin{};
  if (read(orders, &begin, sizeof begin) != sizeof begin) return 125;
  if (begin.value == 1) setenv(reducedMotionVariable, "1", 1);
  const pid_t program = vfork();
  if (program < 0) {
    report(reports, StartReport::Kind::NotStarted, errno);
    return 125;
  }
  if (program == 0) becomeProgram(start);
  // What reads the program's output waits for the program's end, not for this one's.
  for (int given : start.streams) close(given);
  if (start.failure != 0) {
    report(reports, StartReport::Kind::NotStarted, start.failure);
    waitFor(program);
    return start.failure == ENOENT ? 127 : guard::refused;
  }
  report(reports, StartReport::Kind::Started, 0);
  const int status = start.onTerminal ? serveUntilEnd(program, reports, orders) : waitFor(program);
  report(reports, StartReport::Kind::Ended, status);
  endTheRest();
  report(reports, StartReport::Kind::Alone, 0);
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}
