#include "core/run_cmd.h"

#include "core/FileManager.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

struct Process {
  pid_t id;
  pid_t parent;
};

// The parent is the second field after the program's name, which is in parentheses and may contain any byte.
pid_t parentOf(const char* id) {
  char path[64];
  std::snprintf(path, sizeof path, "/proc/%.20s/stat", id);
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  if (file == -1) return -1;
  char text[512];
  const ssize_t size = read(file, text, sizeof text - 1);
  close(file);
  if (size <= 0) return -1;
  text[size] = '\0';
  const char* name_end = std::strrchr(text, ')');
  int parent = -1;
  return name_end != nullptr && std::sscanf(name_end + 1, " %*c %d", &parent) == 1 ? parent : -1;
}

std::vector<Process> allProcesses() {
  std::vector<Process> processes;
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir("/proc"), closedir);
  if (!folder) return processes;
  while (const dirent* entry = readdir(folder.get())) {
    if (!std::isdigit(static_cast<unsigned char>(entry->d_name[0]))) continue;
    processes.push_back({static_cast<pid_t>(std::atol(entry->d_name)), parentOf(entry->d_name)});
  }
  return processes;
}

std::vector<pid_t> treeOf(pid_t root) {
  const std::vector<Process> processes = allProcesses();
  std::vector<pid_t> tree{root};
  for (std::size_t next = 0; next < tree.size(); ++next) {
    for (const Process& process : processes) {
      if (process.parent == tree[next]) tree.push_back(process.id);
    }
  }
  return tree;
}

}  // namespace

void signalProcessTree(pid_t root, int signal) {
  // A stopped parent makes no more children; the second look finds those born between the first look and the
  // stop.
  std::vector<pid_t> tree = treeOf(root);
  for (const pid_t process : tree) kill(process, SIGSTOP);
  std::vector<pid_t> grown = treeOf(root);
  while (grown.size() > tree.size()) {
    for (const pid_t process : grown) kill(process, SIGSTOP);
    tree = std::move(grown);
    grown = treeOf(root);
  }
  for (const pid_t process : tree) kill(process, signal);
  for (const pid_t process : tree) kill(process, SIGCONT);
}

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

// `output`: where its standard output goes, -1 for where ours does.
pid_t spawnShell(const char* cmd, const char* variable, int output = -1) {
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
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (output != -1) posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  const int refused = posix_spawn(&child, "/bin/sh", &actions, nullptr, arguments, environment.data());
  posix_spawn_file_actions_destroy(&actions);
  if (refused != 0) return -1;
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
  const pid_t child = spawnShell(cmd, variable);
  if (child == -1) return 127;
  const int status = awaitExit(child);
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

void run_cmd(std::string_view format, std::initializer_list<MaybeText> values, const char* variable) {
  run_cmd_status(fill(format, values).c_str(), variable);
}

void read_cmd(const std::string& cmd, const std::function<bool(std::string_view piece)>& read) {
  constexpr int patience = 100;  // milliseconds
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return;
  const Descriptor output(ends[0]);
  Descriptor input(ends[1]);
  const pid_t child = spawnShell(cmd.c_str(), nullptr, input.get());
  input = Descriptor();
  if (child == -1) return;
  std::string buffer(std::size_t{1} << 16, '\0');
  while (true) {
    pollfd ready{output.get(), POLLIN, 0};
    std::size_t size = 0;
    if (poll(&ready, 1, patience) > 0) {
      const auto got = readSome(output, buffer.data(), buffer.size());
      if (!got || *got == 0) break;
      size = *got;
    }
    if (read(std::string_view(buffer).substr(0, size))) continue;
    signalProcessTree(child, SIGKILL);
    break;
  }
  awaitExit(child);
}

std::string quoted(const std::string& word) {
  return "'" + replaceAll(word, "'", "'\\''") + "'";
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

namespace {

void reopen(const std::string& log, FILE* stream) {
  if (std::freopen(log.c_str(), "a+", stream) != nullptr) return;
  // A log that cannot be opened leaves the stream closed, and the run reads back as empty. The descriptor
  // must not stay free: the next file that the process opens would get its number, and commands would print
  // into that file.
  if (std::freopen("/dev/null", "a+", stream) == nullptr) return;
}

}  // namespace

void redirectStandardStreams(const std::string& log) {
  reopen(log, stdout);
  reopen(log, stderr);
  reopen(log, stdin);
}

bool discardLog(const std::string& log) {
  removeItemAtPath(log);
  struct stat left {};
  if (lstat(log.c_str(), &left) != 0) return true;
  const Descriptor file(open(log.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  return file && ftruncate(file.get(), 0) == 0;
}

MaybeText run_logged(const std::string& cmd, const std::string& log) {
  const bool isNew = discardLog(log);
  redirectStandardStreams(log);
  run_cmd(cmd.c_str());
  return isNew ? stringWithContentsOfFile(log) : std::nullopt;
}
