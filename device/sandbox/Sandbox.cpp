#include "device/sandbox/Sandbox.h"

#include "device/Refusal.h"
#include "device/Visible.h"
#include "device/guard/StartReport.h"
#include "device/opener/Opener.h"
#include "device/sandbox/Diagnosis.h"
#include "device/session/SystemLog.h"
#include "device/session/Terminal.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <functional>
#include <linux/keyctl.h>
#include <optional>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace device {
namespace {

using Clock = std::chrono::steady_clock;

// bubblewrap waits for ever when the child that sets the device up is killed.
constexpr auto kStartLimit = std::chrono::seconds(30);
constexpr auto kEndLimit = std::chrono::seconds(10);
constexpr std::size_t kLongestMessage = 4096;

struct Pipe {
  Descriptor readEnd;
  Descriptor writeEnd;
};

Pipe makePipe() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) refuseWithError("No pipe could be made:");
  fcntl(ends[0], F_SETFL, O_NONBLOCK);
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

Descriptor argumentFile(const std::vector<std::string>& arguments) {
  std::string content;
  for (const auto& argument : arguments) content.append(argument).push_back('\0');
  Descriptor file(memfd_create("arguments", MFD_CLOEXEC));
  if (!file || write(file.get(), content.data(), content.size()) != static_cast<ssize_t>(content.size()) ||
      lseek(file.get(), 0, SEEK_SET) != 0) {
    refuseWithError("The device's arguments could not be passed on:");
  }
  return file;
}

// What the new process needs, all of it made before fork(), so that the child only makes system calls.
struct Launch {
  std::filesystem::path bubblewrap;
  std::vector<std::string> words;
  std::vector<int> passed;
  int input;
  int output;
  int messages;
};

[[noreturn]] void becomeBubblewrap(const Launch& launch, pid_t parent, const std::vector<char*>& words) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(125);
  // Keys are no namespace's: with the caller's session keyring the device could read them.
  syscall(SYS_keyctl, KEYCTL_JOIN_SESSION_KEYRING, nullptr);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  signal(SIGPIPE, SIG_DFL);
  if (launch.input != STDIN_FILENO) dup2(launch.input, STDIN_FILENO);
  if (launch.output != STDOUT_FILENO) dup2(launch.output, STDOUT_FILENO);
  dup2(launch.messages, STDERR_FILENO);
  for (int descriptor : launch.passed) fcntl(descriptor, F_SETFD, 0);
  // What bubblewrap has in its environment, its process in the device would show.
  char* noEnvironment[] = {nullptr};
  execve(launch.bubblewrap.c_str(), words.data(), noEnvironment);
  const char* reason = strerror(errno);
  dprintf(STDERR_FILENO, "bubblewrap could not be started: %s\n", reason);
  _exit(125);
}

pid_t start(const Launch& launch) {
  std::vector<char*> words;
  for (const auto& word : launch.words) words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child < 0) refuseWithError("bubblewrap could not be started:");
  if (child == 0) becomeBubblewrap(launch, parent, words);
  return child;
}

// Blocks the signals that end the launcher or resize its window, and gives them back at the end.
class Signals {
 public:
  Signals() {
    sigset_t watched;
    sigemptyset(&watched);
    for (int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGWINCH}) sigaddset(&watched, number);
    sigprocmask(SIG_BLOCK, &watched, &before_);
    brokenPipe_ = signal(SIGPIPE, SIG_IGN);
    descriptor_ = Descriptor(signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK));
  }
  ~Signals() {
    sigprocmask(SIG_SETMASK, &before_, nullptr);
    signal(SIGPIPE, brokenPipe_);
  }
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

  int descriptor() const { return descriptor_.get(); }
  std::optional<int> next() {
    signalfd_siginfo signal{};
    if (read(descriptor_.get(), &signal, sizeof signal) != static_cast<ssize_t>(sizeof signal))
      return std::nullopt;
    return static_cast<int>(signal.ssi_signo);
  }

 private:
  sigset_t before_{};
  sighandler_t brokenPipe_ = SIG_DFL;
  Descriptor descriptor_;
};

// Watches one run from the start of bubblewrap to the end of the device's last process.
class Run {
 public:
  // `printed` makes of a piece of output what the caller is shown.
  Run(pid_t child, Pipe reports, Pipe status, Pipe messages, Pipe output,
      std::function<std::string(std::string)> printed, Terminal* terminal, SystemLog& log, Signals& signals,
      Opener* opener)
      : child_(child),
        childEnd_(static_cast<int>(syscall(SYS_pidfd_open, child, 0))),
        reports_(std::move(reports.readEnd)),
        status_(std::move(status.readEnd)),
        messages_(std::move(messages.readEnd)),
        output_(std::move(output.readEnd)),
        printed_(std::move(printed)),
        terminal_(terminal),
        log_(log),
        signals_(signals),
        opener_(opener) {}

  Ending watch() {
    const auto limit = Clock::now() + kStartLimit;
    while (!hasEnded_) {
      int wait = -1;
      if (!isStarted_) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(limit - Clock::now());
        wait = static_cast<int>(std::max<long>(0, left.count()));
      }
      if (serve(wait) == 0 && !isStarted_ && Clock::now() >= limit) {
        isTooSlow_ = true;
        stop();
      }
    }
    waitpid(child_, nullptr, 0);
    awaitLastProcess();
    takeReports();
    takeMessages();
    takeOutput();
    log_.passOn();
    if (terminal_ != nullptr) terminal_->finish();
    return ending();
  }

 private:
  // Serves what happens within `wait` milliseconds (-1: for ever); returns how many sources had something.
  int serve(int wait) {
    std::vector<pollfd> watched;
    for (int source : {childEnd_.get(), reports_.get(), status_.get(), messages_.get(), output_.get(),
                       signals_.descriptor(), log_.descriptor()}) {
      watched.push_back({source, POLLIN, 0});
    }
    if (terminal_ != nullptr) terminal_->addTo(watched);
    if (opener_ != nullptr) {
      opener_->addTo(watched);
      const int patience = opener_->patience();
      if (patience >= 0) wait = wait < 0 ? patience : std::min(wait, patience);
    }
    const int ready = poll(watched.data(), watched.size(), wait);
    if (opener_ != nullptr && ready >= 0) opener_->serve(watched);
    reapAdopted();
    if (ready <= 0) return ready;
    if (watched[0].revents != 0) hasEnded_ = true;
    if (watched[1].revents != 0) takeReports();
    if (watched[2].revents != 0) takeStatus();
    if (watched[3].revents != 0) takeMessages();
    if (watched[4].revents != 0) takeOutput();
    while (auto signal = signals_.next()) takeSignal(*signal);
    log_.passOn();
    if (terminal_ != nullptr) terminal_->serve(watched);
    return ready;
  }

  // What opener programs leave running becomes this process's child, and nobody else's to wait for.
  void reapAdopted() {
    siginfo_t ended{};
    while (waitid(P_ALL, 0, &ended, WEXITED | WNOHANG | WNOWAIT) == 0 && ended.si_pid != 0) {
      if (ended.si_pid == child_ || (opener_ != nullptr && opener_->hasStarted(ended.si_pid))) return;
      waitpid(ended.si_pid, nullptr, 0);
      ended = {};
    }
  }

  void stop() { kill(child_, SIGKILL); }

  void takeSignal(int number) {
    if (number == SIGWINCH) {
      if (terminal_ != nullptr) terminal_->resize();
      return;
    }
    interruption_ = number;
    stop();
  }

  void takeReports() {
    StartReport report{};
    while (reports_) {
      const ssize_t got = read(reports_.get(), &report, sizeof report);
      if (got == 0) reports_.close();
      if (got != static_cast<ssize_t>(sizeof report)) return;
      if (report.kind == StartReport::Kind::Started) isStarted_ = true;
      if (report.kind == StartReport::Kind::NotStarted) startError_ = report.value;
      if (report.kind == StartReport::Kind::Ended) endStatus_ = report.value;
    }
  }

  // Lines such as { "child-pid": 42 … }: the first process of the device, with which all others end.
  void takeStatus() {
    const std::string text = readAll(status_);
    const std::string key = "\"child-pid\": ";
    const auto found = text.find(key);
    if (found == std::string::npos || firstProcess_) return;
    const pid_t first = std::atoi(text.c_str() + found + key.size());
    if (first <= 0) return;
    firstNumber_ = first;
    firstProcess_ = Descriptor(static_cast<int>(syscall(SYS_pidfd_open, first, 0)));
  }

  void takeMessages() {
    const std::string text = readAll(messages_);
    message_.append(text, 0, kLongestMessage - std::min(message_.size(), kLongestMessage));
  }

  void takeOutput() {
    const std::string text = printed_(readAll(output_));
    for (std::size_t done = 0; done < text.size();) {
      const ssize_t written = write(STDERR_FILENO, text.data() + done, text.size() - done);
      if (written < 0 && errno != EINTR) return;
      if (written > 0) done += static_cast<std::size_t>(written);
    }
  }

  // Everything that is there now; closes the source at its end.
  static std::string readAll(Descriptor& source) {
    std::string text;
    std::array<char, 16384> piece;
    while (source && text.size() < (1U << 20)) {
      const ssize_t got = read(source.get(), piece.data(), piece.size());
      if (got == 0) source.close();
      if (got <= 0) break;
      text.append(piece.data(), static_cast<std::size_t>(got));
    }
    return text;
  }

  // bubblewrap ends before the processes that it leaves to the kernel to kill.
  void awaitLastProcess() {
    takeStatus();
    if (!firstProcess_) return;
    pollfd end{firstProcess_.get(), POLLIN, 0};
    const auto limit = Clock::now() + kEndLimit;
    while (Clock::now() < limit) {
      takeOutput();
      if (poll(&end, 1, 50) <= 0) continue;
      waitpid(firstNumber_, nullptr, 0);
      return;
    }
  }

  Ending ending() const {
    if (isTooSlow_) {
      return {Ending::Kind::SetUpFailed, 0,
              "Bubblewrap did not set the device up in time; try again when the machine is less busy."};
    }
    if (interruption_ != 0) return {Ending::Kind::Interrupted, interruption_, {}};
    if (startError_) return {Ending::Kind::NotStarted, *startError_, {}};
    if (endStatus_ && WIFSIGNALED(*endStatus_)) return {Ending::Kind::Killed, WTERMSIG(*endStatus_), {}};
    if (endStatus_) return {Ending::Kind::Exited, WEXITSTATUS(*endStatus_), {}};
    // The device was torn down around the program, such as by a program in it that killed all others.
    if (isStarted_) return {Ending::Kind::Killed, SIGKILL, {}};
    return {Ending::Kind::SetUpFailed, 0, explainFailure(message_, readNamespaceSettings())};
  }

  pid_t child_;
  Descriptor childEnd_;
  Descriptor reports_;
  Descriptor status_;
  Descriptor messages_;
  Descriptor output_;
  std::function<std::string(std::string)> printed_;
  Descriptor firstProcess_;
  pid_t firstNumber_ = -1;
  Terminal* terminal_;
  SystemLog& log_;
  Signals& signals_;
  Opener* opener_;
  std::string message_;
  std::optional<int> startError_;
  std::optional<int> endStatus_;
  int interruption_ = 0;
  bool isStarted_ = false;
  bool isTooSlow_ = false;
  bool hasEnded_ = false;
};

}  // namespace

Ending runInDevice(const std::filesystem::path& bubblewrap, Request request, const Program& program,
                   Opener* opener) {
  Pipe reports = makePipe();
  Pipe status = makePipe();
  Pipe messages = makePipe();
  Pipe output = makePipe();
  request.statusOutput = status.writeEnd.get();
  SystemLog log;
  if (!log.path().empty()) request.sockets.push_back({log.path(), "/.host/log"});
  Descriptor arguments = argumentFile(bwrapArguments(request));
  Descriptor nothing(open("/dev/null", O_RDWR | O_CLOEXEC));
  std::optional<Terminal> terminal;
  if (program.streams == Program::Streams::Terminal) terminal.emplace();
  // What a build prints must not steer the user's terminal.
  std::function<std::string(std::string)> printed = [](std::string text) {
    return visible(std::move(text), "\n\t");
  };
  Descriptor errorOutput;
  Launch launch{bubblewrap, {}, {}, STDIN_FILENO, STDOUT_FILENO, messages.writeEnd.get()};
  switch (program.streams) {
    case Program::Streams::Passed:
      errorOutput = Descriptor(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3));
      break;
    case Program::Streams::Printed:
      if (isatty(STDERR_FILENO) == 0) {
        printed = [](std::string text) { return text; };
      } else {
        printed = [coloured = ColouredOutput()](std::string text) mutable { return coloured.take(text); };
      }
      [[fallthrough]];
    case Program::Streams::Relayed:
      errorOutput = Descriptor(fcntl(output.writeEnd.get(), F_DUPFD_CLOEXEC, 3));
      launch.input = nothing.get();
      launch.output = output.writeEnd.get();
      break;
    case Program::Streams::Terminal:
      errorOutput = Descriptor(fcntl(terminal->deviceSide().get(), F_DUPFD_CLOEXEC, 3));
      launch.input = launch.output = terminal->deviceSide().get();
      break;
  }
  launch.passed = {request.applications, request.var,          request.userPrograms,   request.shellPrograms,
                   arguments.get(),      request.statusOutput, reports.writeEnd.get(), errorOutput.get()};
  for (const auto& file : request.dataFiles) launch.passed.push_back(file.content);
  for (int descriptor : request.passedOn) launch.passed.push_back(descriptor);
  if (opener != nullptr && opener->applicationEnd()) launch.passed.push_back(opener->applicationEnd().get());
  launch.words = {"bwrap",
                  "--args",
                  std::to_string(arguments.get()),
                  "--",
                  "/.host/tweakbench/starter",
                  std::to_string(reports.writeEnd.get()),
                  std::to_string(errorOutput.get()),
                  terminal ? "terminal" : "plain"};
  launch.words.insert(launch.words.end(), program.command.begin(), program.command.end());
  Signals signals;
  // The device's first process outlives bubblewrap by a moment, and is then this process's to wait for.
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  const pid_t child = start(launch);
  for (Pipe* pipe : {&reports, &status, &messages, &output}) pipe->writeEnd.close();
  errorOutput.close();
  if (terminal) terminal->deviceSide().close();
  if (opener != nullptr) opener->applicationEnd().close();
  return Run(child, std::move(reports), std::move(status), std::move(messages), std::move(output),
             std::move(printed), terminal ? &*terminal : nullptr, log, signals, opener)
      .watch();
}

}  // namespace device
