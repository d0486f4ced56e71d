#include "device/Process.h"

#include "device/Refusal.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <linux/keyctl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

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

struct Source {
  Pipe pipe;
  std::string* text;
};

// Reads once; closes the source at its end.
void take(Source& source) {
  std::array<char, 16384> piece;
  const ssize_t got = read(source.pipe.readEnd.get(), piece.data(), piece.size());
  if (got < 0 && errno == EINTR) return;
  if (got <= 0) {
    source.pipe.readEnd.close();
    return;
  }
  const std::size_t room = mostCaptured - source.text->size();
  source.text->append(piece.data(), std::min(room, static_cast<std::size_t>(got)));
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
  Descriptor nothing(open("/dev/null", O_RDWR | O_CLOEXEC));
  if (!nothing) refuseWithError("/dev/null could not be opened:");
  return nothing;
}

Descriptor copyOf(int descriptor) {
  return Descriptor(fcntl(descriptor, F_DUPFD_CLOEXEC, 3));
}

Descriptor endOf(pid_t child) {
  return Descriptor(child < 0 ? -1 : static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
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

Captured capture(const std::vector<std::string>& words, std::chrono::milliseconds limit) {
  Captured result;
  std::array<Source, 2> sources{{{makePipe(), &result.output}, {makePipe(), &result.errors}}};
  ProcessStart start{words};
  start.output = sources[0].pipe.writeEnd.get();
  start.errors = sources[1].pipe.writeEnd.get();
  start.endsBy = SIGTERM;
  const pid_t child = spawn(start);
  for (auto& source : sources) source.pipe.writeEnd.close();
  if (child < 0) return {127, {}, {}};
  const auto end = Clock::now() + limit;
  bool isStopped = false;
  while (sources[0].pipe.readEnd || sources[1].pipe.readEnd) {
    // A closed descriptor is -1, which poll() leaves out.
    std::array<pollfd, 2> watched{
        {{sources[0].pipe.readEnd.get(), POLLIN, 0}, {sources[1].pipe.readEnd.get(), POLLIN, 0}}};
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
    const int ready = poll(watched.data(), watched.size(),
                           isStopped ? -1 : static_cast<int>(std::max<long>(0, left.count())));
    if ((ready == 0 || Interruption::hasCome()) && !isStopped) {
      kill(child, SIGTERM);
      isStopped = true;
    }
    for (std::size_t index = 0; ready > 0 && index < watched.size(); ++index) {
      if (watched[index].revents != 0) take(sources[index]);
    }
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  Interruption::check();
  result.status = isStopped ? 124 : shellStatus(status);
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
