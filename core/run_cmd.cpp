#include "core/run_cmd.h"

#include "core/FileManager.h"

#include <cctype>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

// All processes by their parents. The parent is the second field after the program's name, which is in
// parentheses and may contain any byte.
std::multimap<pid_t, pid_t> processesByParent() {
  std::multimap<pid_t, pid_t> processes;
  for (const std::string& name : contentsOfDirectoryAtPath("/proc").value_or(std::vector<std::string>{})) {
    if (!std::isdigit(static_cast<unsigned char>(name.front()))) continue;
    const std::string status = contentsOfFile("/proc/" + name + "/stat").value_or(std::string());
    const std::size_t nameEnd = status.rfind(')');
    int parent = 0;
    if (nameEnd != std::string::npos && std::sscanf(status.c_str() + nameEnd, ") %*c %d", &parent) == 1)
      processes.emplace(parent, std::stoi(name));
  }
  return processes;
}

std::vector<pid_t> treeOf(pid_t root) {
  const auto processes = processesByParent();
  std::vector<pid_t> tree{root};
  for (std::size_t next = 0; next < tree.size(); ++next) {
    const auto [first, last] = processes.equal_range(tree[next]);
    for (auto child = first; child != last; ++child) tree.push_back(child->second);
  }
  return tree;
}

// Sends `signal` to `root` and its descendants in /proc. Processes whose parent has ended are not reached.
void signalProcessTree(pid_t root, int signal) {
  // A stopped parent makes no more children; the second look finds those born between the first look and the
  // stop.
  std::vector<pid_t> tree;
  for (std::vector<pid_t> grown = treeOf(root); grown.size() > tree.size(); grown = treeOf(root)) {
    tree = std::move(grown);
    for (const pid_t process : tree) kill(process, SIGSTOP);
  }
  for (const pid_t process : tree) kill(process, signal);
  for (const pid_t process : tree) kill(process, SIGCONT);
}

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

void redirectStandardStreams(const std::string& log) {
  for (FILE* const stream : {stdout, stderr, stdin}) {
    // A log that cannot be opened leaves the stream closed, and the run reads back as empty. The descriptor
    // must not stay free: the next file that the process opens would get its number, and commands would print
    // into that file.
    if (std::freopen(log.c_str(), "a+", stream) == nullptr)
      static_cast<void>(std::freopen("/dev/null", "a+", stream));
  }
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
