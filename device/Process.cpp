#include "device/Process.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fcntl.h>
#include <linux/keyctl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t mostCaptured = 1 << 20;

volatile sig_atomic_t came = 0;

std::vector<char*> pointersTo(const std::vector<std::string>& words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (const auto& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

// In the child, which has the parent's memory until it becomes the program: system calls only. Returns errno.
int become(const ProcessStart& start, char* const* words, char* const* environment, pid_t parent) {
  if (start.endsBy != 0) {
    prctl(PR_SET_PDEATHSIG, start.endsBy);
    if (getppid() != parent) _exit(125);
  }
  if (start.place == ProcessStart::Place::OwnGroup) setpgid(0, 0);
  if (start.place == ProcessStart::Place::OwnSession) setsid();
  if (start.hasOwnKeys) syscall(SYS_keyctl, KEYCTL_JOIN_SESSION_KEYRING, nullptr);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  signal(SIGPIPE, SIG_DFL);
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  const int streams[] = {start.input, start.output, start.errors};
  for (int stream = 0; stream < 3; ++stream) dup2(streams[stream] < 0 ? nothing : streams[stream], stream);
  for (int descriptor : start.passed) fcntl(descriptor, F_SETFD, 0);
  execve(start.words.front().c_str(), words, environment);
  return errno;
}

}  // namespace

Pipe makePipe() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) refuseWithError("No pipe could be made:");
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

Descriptor inMemory(std::string_view content) {
  Descriptor file(memfd_create("data", MFD_CLOEXEC));
  if (!file || write(file.get(), content.data(), content.size()) != static_cast<ssize_t>(content.size()) ||
      lseek(file.get(), 0, SEEK_SET) != 0) {
    refuseWithError("No file in memory could be made:");
  }
  return file;
}

Descriptor openNothing() {
  return orRefuse(Descriptor(open("/dev/null", O_RDWR | O_CLOEXEC)), "/dev/null could not be opened:");
}

Descriptor copyOf(int descriptor) {
  return Descriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, 3));
}

Descriptor endOf(pid_t child) {
  return Descriptor(child < 0 ? -1 : static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
}

ApplicationSocket connectApplication(int number) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) return {};
  ApplicationSocket made{Descriptor(ends[0]), {}};
  const Descriptor other(ends[1]);
  Descriptor numbered(fcntl(other.get(), F_DUPFD_CLOEXEC, number));
  if (numbered.get() == number) made.applicationEnd = std::move(numbered);
  return made;
}

sockaddr_un addressIn(int folder, const std::string& name) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/%s", folder, name.c_str());
  return address;
}

pid_t spawn(const ProcessStart& start) {
  std::vector<char*> words = pointersTo(start.words);
  const std::string name = start.words.front().substr(start.words.front().rfind('/') + 1);
  words.front() = const_cast<char*>(name.c_str());
  const std::vector<char*> variables =
      start.environment ? pointersTo(*start.environment) : std::vector<char*>();
  const pid_t parent = getpid();
  volatile int failure = 0;
  // Copying the launcher's memory map takes longer than all the rest.
  const pid_t child = vfork();
  if (child == 0) {
    failure = become(start, words.data(), start.environment ? variables.data() : environ, parent);
    _exit(127);
  }
  if (child > 0 && failure != 0) {
    waitpid(child, nullptr, 0);
    errno = failure;
    return -1;
  }
  return child;
}

int shellStatus(int status) {
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

int runToEnd(ProcessStart start, std::chrono::milliseconds limit, const TakeOutput& take) {
  std::array<Pipe, 2> pipes;
  for (int* stream : {&start.output, &start.errors}) {
    if (*stream >= 0) continue;
    Pipe& pipe = pipes[stream == &start.output ? 0 : 1] = makePipe();
    *stream = pipe.writeEnd.get();
  }
  const pid_t child = spawn(start);
  for (auto& pipe : pipes) pipe.writeEnd.close();
  if (child < 0) return 127;
  Descriptor end = endOf(child);
  const auto latest = limit == unlimited ? Clock::time_point::max() : Clock::now() + limit;
  bool isStopped = false;
  std::array<char, 16384> piece;
  while (pipes[0].readEnd || pipes[1].readEnd || end) {
    // A closed descriptor is -1, which poll() leaves out. A signal may come just before the call.
    std::array<pollfd, 3> watched{
        {{pipes[0].readEnd.get(), POLLIN, 0}, {pipes[1].readEnd.get(), POLLIN, 0}, {end.get(), POLLIN, 0}}};
    const auto left = std::clamp(std::chrono::ceil<std::chrono::milliseconds>(latest - Clock::now()),
                                 std::chrono::milliseconds(0), std::chrono::milliseconds(500));
    const int ready = poll(watched.data(), watched.size(), static_cast<int>(left.count()));
    bool isWanted = Clock::now() < latest && !Interruption::hasCome();
    for (int index = 0; ready > 0 && index < 2; ++index) {
      if (watched[index].revents == 0) continue;
      const ssize_t got = read(watched[index].fd, piece.data(), piece.size());
      if (got > 0 && !take(index + 1, {piece.data(), static_cast<std::size_t>(got)})) isWanted = false;
      if (got == 0 || (got < 0 && errno != EINTR)) pipes[index].readEnd.close();
    }
    if (ready > 0 && watched[2].revents != 0) end.close();
    if (!isWanted && !isStopped && (end || pipes[0].readEnd || pipes[1].readEnd)) {
      kill(child, start.endsBy);
      isStopped = true;
    }
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  Interruption::check();
  return isStopped ? 124 : shellStatus(status);
}

Captured capture(const std::vector<std::string>& words, std::chrono::milliseconds limit) {
  Captured result;
  ProcessStart start{words};
  start.endsBy = SIGTERM;
  result.status = runToEnd(start, limit, [&](int stream, std::string_view piece) {
    std::string& text = stream == STDOUT_FILENO ? result.output : result.errors;
    text.append(piece.substr(0, mostCaptured - text.size()));
    return true;
  });
  return result;
}

Interruption::Interruption() {
  came = 0;
  struct sigaction note {};
  note.sa_handler = [](int number) { came = number; };
  // The signal is asked for between two steps; none of them is to fail for it.
  note.sa_flags = SA_RESTART;
  for (int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    struct sigaction& before = before_[number];
    sigaction(number, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(number, &note, nullptr);
  }
}

Interruption::~Interruption() {
  for (const auto& [number, before] : before_) sigaction(number, &before, nullptr);
}

bool Interruption::hasCome() {
  return came != 0;
}

void Interruption::check() {
  if (came != 0) throw Interrupted{came};
}
