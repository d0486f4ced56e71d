#include "device/sandbox/Sandbox.h"

#include "device/Visible.h"
#include "device/guard/Contract.h"
#include "device/opener/Opener.h"
#include "device/session/SingleWindow.h"
#include "device/session/SystemLog.h"

#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>

namespace {

using Clock = std::chrono::steady_clock;

// bubblewrap waits for ever when the child that sets the device up is killed.
constexpr auto startLimit = std::chrono::seconds(30);
constexpr int endLimit = 10'000;  // milliseconds
// For what was written before a signal.
constexpr auto lastOutput = std::chrono::milliseconds(200);
constexpr std::size_t longestMessage = 4096;

// One whose reader never waits. It has no end: both ends stay open here, and childEnd_ tells when to stop.
Pipe makeWatchedPipe() {
  Pipe pipe = makePipe();
  fcntl(pipe.readEnd.get(), F_SETFL, O_NONBLOCK);
  return pipe;
}

// Blocks the signals that end the launcher or resize its window, and on a terminal those that stop it, and
// gives them back at the end. SIGPIPE stays ignored: writing to a pipe that nobody reads fails with EPIPE.
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
    signal(SIGPIPE, SIG_IGN);
  }
  ~Signals() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

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
  Descriptor descriptor_;
};

// One run, from the start of bubblewrap to the end of the device's last process.
class Run {
 public:
  Run(Relay::Streams streams, SystemLog& log, Opener& opener, SingleWindow& window)
      : relay_(streams), terminal_(relay_.terminal()), log_(log), opener_(opener), window_(window) {}

  void start(const fs::path& bubblewrap, Request& request, const Program& program) {
    for (Pipe* watched : {&reports_, &status_, &messages_}) *watched = makeWatchedPipe();
    orders_ = makePipe();
    request.statusOutput = status_.writeEnd.get();
    std::string list;
    for (const auto& argument : bwrapArguments(request)) list.append(argument).push_back('\0');
    // In a file, because others of the host can read a process's arguments.
    const Descriptor arguments = inMemory(list);
    ProcessStart start{
        {bubblewrap.string(), "--args", std::to_string(arguments.get()), "--", "/.host/tweakbench/starter"}};
    for (int descriptor :
         {reports_.writeEnd.get(), orders_.readEnd.get(), relay_.input(), relay_.output(), relay_.errors()}) {
      start.words.push_back(std::to_string(descriptor));
      start.passed.push_back(descriptor);
    }
    start.words.push_back(terminal_ == nullptr        ? plainStreams
                          : terminal_->wantsJoining() ? terminalInForeground
                                                      : terminalInBackground);
    start.words.push_back(program.isFiltered ? filteredStart : unfilteredStart);
    start.words.insert(start.words.end(), program.command.begin(), program.command.end());
    const auto& [applications, var, userPrograms, shellPrograms, theosLibraries] = request.folders;
    for (int descriptor : {applications.get(), var.get(), userPrograms.get(), shellPrograms.get(),
                           theosLibraries.get(), arguments.get(), request.statusOutput,
                           opener_.applicationEnd().get(), window_.applicationEnd().get()}) {
      if (descriptor >= 0) start.passed.push_back(descriptor);
    }
    for (const auto& file : request.dataFiles) start.passed.push_back(file.content);
    start.passed.insert(start.passed.end(), request.passedOn.begin(), request.passedOn.end());
    // bubblewrap shows its environment in the device, and its standard output as the console.
    start.environment.emplace();
    if (terminal_ != nullptr) start.output = terminal_->deviceSide().get();
    start.errors = messages_.writeEnd.get();
    start.endsBy = SIGKILL;
    // Not stopped with the launcher, which stops what runs in the device first.
    start.place = ProcessStart::Place::OwnGroup;
    // Keyrings are not namespaced: the device could read the caller's.
    start.hasOwnKeys = true;
    // The device's first process outlives bubblewrap by a moment, and is then this process's to wait for.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    child_ = spawn(start);
    if (child_ < 0) refuseWithError("bubblewrap could not be started:");
    childEnd_ = endOf(child_);
    opener_.applicationEnd().close();
    window_.applicationEnd().close();
    const int isReduced = program.beforeStart && program.beforeStart() ? 1 : 0;
    relay_.start();
    order(StartOrder::Kind::Begin, isReduced);
  }

  Ending watch() {
    const auto limit = Clock::now() + startLimit;
    while (!hasEnded_) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(limit - Clock::now()).count();
      serve(isStarted_ ? -1 : static_cast<int>(std::max<long>(0, left)));
      if (hasEnded_ || isStarted_ || Clock::now() < limit) continue;
      isTooSlow_ = true;
      stop();
    }
    if (!isAlone_) {
      waitpid(child_, nullptr, 0);
      awaitLastProcess();
      takeReports();
    }
    takeMessages();
    log_.passOn();
    deliver();
    relay_.finish();
    return ending();
  }

 private:
  // Serves what happens within `wait` milliseconds (-1: for ever).
  void serve(int wait) {
    std::vector<pollfd> watched;
    for (int source : {childEnd_.get(), reports_.readEnd.get(), status_.readEnd.get(),
                       messages_.readEnd.get(), signals_.descriptor(), log_.descriptor()}) {
      watched.push_back({source, POLLIN, 0});
    }
    if (terminal_ != nullptr) terminal_->addTo(watched);
    opener_.addTo(watched);
    window_.addTo(watched);
    if (const int patience = opener_.patience(); patience >= 0)
      wait = wait < 0 ? patience : std::min(wait, patience);
    poll(watched.data(), watched.size(), wait);
    opener_.serve();
    window_.serve();
    reapAdopted();
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
  }

  // What opener programs leave running becomes this process's child, and nobody else's to wait for.
  void reapAdopted() {
    siginfo_t ended{};
    while (waitid(P_ALL, 0, &ended, WEXITED | WNOHANG | WNOWAIT) == 0 && ended.si_pid != 0) {
      if (ended.si_pid == child_ || opener_.hasStarted(ended.si_pid)) return;
      waitpid(ended.si_pid, nullptr, 0);
      ended = {};
    }
  }

  void stop() { kill(child_, SIGKILL); }

  // The pipe takes it: it is all but empty.
  void order(StartOrder::Kind kind, int value) const {
    const StartOrder message{kind, value};
    [[maybe_unused]] const ssize_t written = write(orders_.writeEnd.get(), &message, sizeof message);
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
    while (read(reports_.readEnd.get(), &report, sizeof report) == static_cast<ssize_t>(sizeof report)) {
      if (report.kind == StartReport::Kind::Started) isStarted_ = true;
      if (report.kind == StartReport::Kind::NotStarted) startError_ = report.value;
      if (report.kind == StartReport::Kind::Stopped) takeStop(report.value);
      if (report.kind == StartReport::Kind::Ended) endStatus_ = report.value;
      // Nothing is left to wait for while bubblewrap takes the device down.
      if (report.kind == StartReport::Kind::Alone) hasEnded_ = isAlone_ = true;
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
    firstProcess_ = endOf(first);
  }

  void takeMessages() {
    const std::string text = readAll(messages_);
    message_.append(text, 0, longestMessage - std::min(message_.size(), longestMessage));
  }

  // Whoever reads the output may be slow, or never read at all, and signals still end the launcher.
  void deliver() {
    const auto limit = Clock::now() + lastOutput;
    while (interruption_ == 0 || Clock::now() < limit) {
      std::vector<pollfd> watched = relay_.undelivered();
      if (watched.empty()) return;
      watched.push_back({signals_.descriptor(), POLLIN, 0});
      poll(watched.data(), watched.size(), interruption_ == 0 ? -1 : 20);
      while (auto signal = signals_.next()) takeSignal(*signal);
    }
  }

  // Everything that is there now.
  static std::string readAll(const Pipe& source) {
    std::string text;
    std::array<char, 16384> piece;
    while (text.size() < (1U << 20)) {
      const ssize_t got = read(source.readEnd.get(), piece.data(), piece.size());
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
    while (poll(&end, 1, endLimit) < 0 && errno == EINTR) {
    }
    waitpid(firstNumber_, nullptr, WNOHANG);
  }

  Ending ending() const {
    if (isTooSlow_) {
      throw Refusal("Bubblewrap did not set the device up in time; try again when the machine is less busy.");
    }
    if (interruption_ != 0) return {128 + interruption_, {}, interruption_};
    if (startError_ == ENOENT) return {127, " was not found in the device."};
    if (startError_) return {126, std::string(" could not be started: ") + std::strerror(*startError_) + "."};
    if (!endStatus_ && !isStarted_) throw Refusal(explainFailure(message_, readNamespaceSettings()));
    // Without a status the device was torn down around the program, such as by one that killed all others.
    const int status = endStatus_.value_or(SIGKILL);
    if (!WIFSIGNALED(status)) return {WEXITSTATUS(status)};
    const int number = WTERMSIG(status);
    // Control-C ends a script of the caller's only where the launcher, too, ends by the signal.
    if (terminal_ != nullptr && number == SIGINT) return {128 + number, {}, number};
    return {128 + number,
            " was killed by signal " + std::to_string(number) + " (" + strsignal(number) + ")."};
  }

  pid_t child_ = -1;
  Descriptor childEnd_;
  Pipe reports_;
  Pipe status_;
  Pipe messages_;
  Pipe orders_;
  Descriptor firstProcess_;
  pid_t firstNumber_ = -1;
  Relay relay_;
  // Of the relay; null where there is none.
  Terminal* terminal_;
  SystemLog& log_;
  Signals signals_{terminal_ != nullptr};
  Opener& opener_;
  SingleWindow& window_;
  std::string message_;
  std::optional<int> startError_;
  std::optional<int> endStatus_;
  int interruption_ = 0;
  bool isStarted_ = false;
  bool isTooSlow_ = false;
  bool hasEnded_ = false;
  bool isAlone_ = false;
};

std::optional<long> setting(const char* path) {
  std::ifstream file(path);
  long value = 0;
  if (file >> value) return value;
  return std::nullopt;
}

std::string firstLine(const std::string& message) {
  std::string line = message.substr(0, message.find('\n'));
  if (line.starts_with("bwrap: ")) line = line.substr(7);
  return line.empty() ? "bubblewrap gave no reason" : line;
}

}  // namespace

Ending runInDevice(const fs::path& bubblewrap, Request request, const Program& program, SystemLog& log,
                   Opener& opener, SingleWindow& window) {
  Run run(program.streams, log, opener, window);
  run.start(bubblewrap, request, program);
  return run.watch();
}

NamespaceSettings readNamespaceSettings() {
  return {setting("/proc/sys/kernel/unprivileged_userns_clone"),
          setting("/proc/sys/user/max_user_namespaces"),
          setting("/proc/sys/kernel/apparmor_restrict_unprivileged_userns")};
}

std::string explainFailure(const std::string& message, const NamespaceSettings& settings) {
  const auto because = [](const std::string& reason) { return setUpFailed + reason; };
  if (hasAny(message, {"Unknown option"}))
    return because("this bubblewrap is too old; install version 0.8.0-2+deb12u1, 0.10 or later.");
  if (settings.unprivilegedClone == 0) {
    return because(
        "user namespaces are switched off; an administrator can allow them with "
        "\"sysctl -w kernel.unprivileged_userns_clone=1\".");
  }
  if (settings.maximum == 0) {
    return because(
        "the number of user namespaces is limited to none; an administrator can allow them with "
        "\"sysctl -w user.max_user_namespaces=10000\".");
  }
  const bool isRefusal = hasAny(message, {"uid map", "new namespace", "Operation not permitted"});
  if (isRefusal && settings.appArmorRestriction.value_or(0) != 0) {
    return because(
        "AppArmor lets no ordinary program make user namespaces; an administrator can allow it with a "
        "profile for /usr/bin/bwrap that has \"userns,\" in it.");
  }
  const std::string said = firstLine(message);
  return because(isRefusal ? "this system refuses user namespaces, as many containers do (" + said + ")."
                           : said + ".");
}
