#include "device/sandbox/Sandbox.h"

#include "device/Refusal.h"
#include "device/guard/StartReport.h"
#include "device/opener/Opener.h"
#include "device/sandbox/Diagnosis.h"
#include "device/session/SystemLog.h"

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
// For what was written before a signal.
constexpr auto kLastOutput = std::chrono::milliseconds(200);
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
  // What it shows as the console: the device's terminal, or nothing.
  int output;
  int nothing;
  int messages;
};

[[noreturn]] void becomeBubblewrap(const Launch& launch, pid_t parent, const std::vector<char*>& words) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(125);
  // Not stopped with the launcher, which stops what runs in the device first.
  setpgid(0, 0);
  // Keys are no namespace's: with the caller's session keyring the device could read them.
  syscall(SYS_keyctl, KEYCTL_JOIN_SESSION_KEYRING, nullptr);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  signal(SIGPIPE, SIG_DFL);
  dup2(launch.nothing, STDIN_FILENO);
  dup2(launch.output, STDOUT_FILENO);
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

// Blocks the signals that end the launcher or resize its window, and on a terminal those that stop it, and
// gives them back at the end.
class Signals {
 public:
  explicit Signals(bool onTerminal) {
    sigset_t watched;
    sigemptyset(&watched);
    for (int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGWINCH}) sigaddset(&watched, number);
    if (onTerminal) sigaddset(&watched, SIGTSTP);
    descriptor_ = Descriptor(signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK));
    // Reading in the background is to fail instead.
    if (onTerminal) sigaddset(&watched, SIGTTIN);
    sigprocmask(SIG_BLOCK, &watched, &before_);
    brokenPipe_ = signal(SIGPIPE, SIG_IGN);
  }
  ~Signals() {
    sigprocmask(SIG_SETMASK, &before_, nullptr);
    signal(SIGPIPE, brokenPipe_);
  }
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

  int descriptor() const { return descriptor_.get(); }
  std::optional<signalfd_siginfo> next() {
    signalfd_siginfo signal{};
    if (read(descriptor_.get(), &signal, sizeof signal) != static_cast<ssize_t>(sizeof signal))
      return std::nullopt;
    return signal;
  }

  // Stops the caller's whole job, this process included, until it is continued.
  static void stopJob(int number) {
    sigset_t one;
    sigemptyset(&one);
    sigaddset(&one, number);
    kill(0, number);
    sigprocmask(SIG_UNBLOCK, &one, nullptr);
    sigprocmask(SIG_BLOCK, &one, nullptr);
  }

 private:
  sigset_t before_{};
  sighandler_t brokenPipe_ = SIG_DFL;
  Descriptor descriptor_;
};

// Watches one run from the start of bubblewrap to the end of the device's last process.
class Run {
 public:
  Run(pid_t child, Pipe reports, Pipe status, Pipe messages, Descriptor orders, Relay& relay, SystemLog& log,
      Signals& signals, Opener* opener)
      : child_(child),
        childEnd_(static_cast<int>(syscall(SYS_pidfd_open, child, 0))),
        reports_(std::move(reports.readEnd)),
        status_(std::move(status.readEnd)),
        messages_(std::move(messages.readEnd)),
        orders_(std::move(orders)),
        relay_(relay),
        terminal_(relay.terminal()),
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
    log_.passOn();
    deliver();
    relay_.finish();
    return ending();
  }

 private:
  // Serves what happens within `wait` milliseconds (-1: for ever); returns how many sources had something.
  int serve(int wait) {
    std::vector<pollfd> watched;
    for (int source : {childEnd_.get(), reports_.get(), status_.get(), messages_.get(), signals_.descriptor(),
                       log_.descriptor()}) {
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
    while (auto signal = signals_.next()) takeSignal(*signal);
    log_.passOn();
    if (terminal_ != nullptr && !terminal_->serve(watched)) {
      terminal_->leave();
      order(StartOrder::Kind::Continue, 0);
    }
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

  void order(StartOrder::Kind kind, int value) const {
    const StartOrder message{kind, value};
    [[maybe_unused]] const ssize_t written = write(orders_.get(), &message, sizeof message);
  }

  void takeSignal(const signalfd_siginfo& signal) {
    const int number = static_cast<int>(signal.ssi_signo);
    if (number == SIGWINCH) {
      if (terminal_ != nullptr) terminal_->resize();
      return;
    }
    // Typed, and meant for the program; as long as the terminals are not joined it is not read as a key.
    const bool isTyped = signal.ssi_code == SI_KERNEL && (number == SIGINT || number == SIGQUIT);
    if (number == SIGTSTP || (isTyped && terminal_ != nullptr)) {
      order(StartOrder::Kind::Signal, number);
      return;
    }
    interruption_ = number;
    stop();
  }

  // As a job of the caller's shell would: one that wants to read from the terminal in vain stops, and so does
  // one that Control-Z stopped.
  void takeStop(int number) {
    if (terminal_ == nullptr) return;
    const bool wantsTerminal = number == SIGTTIN || number == SIGTTOU;
    const bool wasJoined = terminal_->isJoined();
    if (!wantsTerminal || !terminal_->isInForeground()) {
      terminal_->leave();
      Signals::stopJob(wantsTerminal ? SIGTTIN : SIGTSTP);
    }
    const bool joins = (wantsTerminal || wasJoined) && terminal_->isInForeground();
    if (joins) terminal_->join();
    order(StartOrder::Kind::Continue, joins ? 1 : 0);
  }

  void takeReports() {
    StartReport report{};
    while (reports_) {
      const ssize_t got = read(reports_.get(), &report, sizeof report);
      if (got == 0) reports_.close();
      if (got != static_cast<ssize_t>(sizeof report)) return;
      if (report.kind == StartReport::Kind::Started) isStarted_ = true;
      if (report.kind == StartReport::Kind::NotStarted) startError_ = report.value;
      if (report.kind == StartReport::Kind::Stopped) takeStop(report.value);
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

  // Whoever reads the output may be slow, or never read at all, and signals still end the launcher.
  void deliver() {
    const auto limit = Clock::now() + kLastOutput;
    while (interruption_ == 0 || Clock::now() < limit) {
      std::vector<pollfd> watched = relay_.undelivered();
      if (watched.empty()) return;
      watched.push_back({signals_.descriptor(), POLLIN, 0});
      poll(watched.data(), watched.size(), interruption_ == 0 ? -1 : 20);
      while (auto signal = signals_.next()) takeSignal(*signal);
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
    // Control-C ends a script of the caller's only where the launcher, too, ends by the signal.
    if (terminal_ != nullptr && endStatus_ && WIFSIGNALED(*endStatus_) && WTERMSIG(*endStatus_) == SIGINT)
      return {Ending::Kind::Interrupted, SIGINT, {}};
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
  Descriptor orders_;
  Descriptor firstProcess_;
  pid_t firstNumber_ = -1;
  Relay& relay_;
  // Of the relay; null where there is none.
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
  request.statusOutput = status.writeEnd.get();
  SystemLog log;
  if (!log.path().empty()) request.sockets.push_back({log.path(), "/.host/log"});
  Descriptor arguments = argumentFile(bwrapArguments(request));
  Descriptor nothing(open("/dev/null", O_RDWR | O_CLOEXEC));
  Relay relay(program.streams);
  Terminal* const terminal = relay.terminal();
  Descriptor orders;
  Descriptor takenOrders(open("/dev/null", O_RDONLY | O_CLOEXEC));
  if (terminal != nullptr) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) refuseWithError("No pipe could be made:");
    takenOrders = Descriptor(ends[0]);
    orders = Descriptor(ends[1]);
  }
  Launch launch{bubblewrap,
                {},
                {},
                terminal != nullptr ? terminal->deviceSide().get() : nothing.get(),
                nothing.get(),
                messages.writeEnd.get()};
  launch.passed = {request.applications, request.var,          request.userPrograms,   request.shellPrograms,
                   arguments.get(),      request.statusOutput, reports.writeEnd.get(), takenOrders.get(),
                   relay.input(),        relay.output(),       relay.errors()};
  if (request.theosLibraries >= 0) launch.passed.push_back(request.theosLibraries);
  for (const auto& file : request.dataFiles) launch.passed.push_back(file.content);
  for (int descriptor : request.passedOn) launch.passed.push_back(descriptor);
  if (opener != nullptr && opener->applicationEnd()) launch.passed.push_back(opener->applicationEnd().get());
  launch.words = {"bwrap",
                  "--args",
                  std::to_string(arguments.get()),
                  "--",
                  "/.host/tweakbench/starter",
                  std::to_string(reports.writeEnd.get()),
                  std::to_string(takenOrders.get()),
                  std::to_string(relay.input()),
                  std::to_string(relay.output()),
                  std::to_string(relay.errors()),
                  terminal == nullptr        ? kPlainStreams
                  : terminal->wantsJoining() ? kTerminalInForeground
                                             : kTerminalInBackground};
  launch.words.insert(launch.words.end(), program.command.begin(), program.command.end());
  Signals signals(terminal != nullptr);
  // The device's first process outlives bubblewrap by a moment, and is then this process's to wait for.
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  const pid_t child = start(launch);
  for (Pipe* pipe : {&reports, &status, &messages}) pipe->writeEnd.close();
  takenOrders.close();
  if (opener != nullptr) opener->applicationEnd().close();
  relay.start();
  return Run(child, std::move(reports), std::move(status), std::move(messages), std::move(orders), relay, log,
             signals, opener)
      .watch();
}

}  // namespace device
