#include "core/run_cmd.h"

#include "core/History.h"
#include "core/ProcessTree.h"

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <mutex>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

// Which shells are running, so that stopCommands() finds them. A child leaves the list before it is waited
// for to the end (see awaitExit), so that a signal never reaches a process identifier that was given to
// someone else.
struct RunningCommands {
  std::mutex mutex;
  std::condition_variable changed;
  std::vector<pid_t> shells;
  bool stopped = false;
};

RunningCommands& running() {
  // Never destroyed: a worker may be on its way out of here when the process ends.
  static RunningCommands& commands = *new RunningCommands;
  return commands;
}

pid_t spawnShell(const char* cmd, const char* variable) {
  char* const arguments[] = {const_cast<char*>("sh"), const_cast<char*>("-c"), const_cast<char*>(cmd),
                             nullptr};
  std::vector<char*> environment;
  for (char** each = environ; *each != nullptr; ++each) environment.push_back(*each);
  // Of two values the shell takes the last.
  if (variable != nullptr) environment.push_back(const_cast<char*>(variable));
  environment.push_back(nullptr);
  RunningCommands& commands = running();
  // The lock is held over the spawn: a command is either in the list or will see that commands are stopped.
  const std::lock_guard lock(commands.mutex);
  if (commands.stopped) return -1;
  pid_t child = -1;
  if (posix_spawn(&child, "/bin/sh", nullptr, nullptr, arguments, environment.data()) != 0) return -1;
  commands.shells.push_back(child);
  return child;
}

// Returns the status as waitpid() gives it.
int awaitExit(pid_t child) {
  // The child is first waited for without being reaped, so that its identifier stays its own while it is
  // listed.
  siginfo_t ended{};
  while (waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT) == -1 && errno == EINTR) {
  }
  RunningCommands& commands = running();
  {
    const std::lock_guard lock(commands.mutex);
    std::erase(commands.shells, child);
  }
  int status = 0;
  pid_t result = -1;
  while ((result = waitpid(child, &status, 0)) == -1 && errno == EINTR) {
  }
  if (result == -1) perror("waitpid");
  commands.changed.notify_all();
  return status;
}

}  // namespace

void run_cmd(const char* cmd) {
  run_cmd_status(cmd);
}

int run_cmd_status(const char* cmd, const char* variable) {
  keepHistory();
  const pid_t child = spawnShell(cmd, variable);
  if (child == -1) return 127;
  const int status = awaitExit(child);
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

void run_cmd(std::string_view format, std::initializer_list<MaybeText> values, const char* variable) {
  run_cmd_status(fill(format, values).c_str(), variable);
}

void stopCommands(int graceMilliseconds) {
  RunningCommands& commands = running();
  std::unique_lock lock(commands.mutex);
  commands.stopped = true;
  const auto noneLeft = [&commands] { return commands.shells.empty(); };
  for (const pid_t shell : commands.shells) signalProcessTree(shell, SIGTERM);
  if (commands.changed.wait_for(lock, std::chrono::milliseconds(graceMilliseconds), noneLeft)) return;
  for (const pid_t shell : commands.shells) signalProcessTree(shell, SIGKILL);
  commands.changed.wait(lock, noneLeft);
}
