#include "device/folder/HistoryKeeper.h"

#include "core/LauncherContract.h"
#include "device/folder/Beneath.h"

#include <algorithm>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace {

constexpr const char* missingIsSaid = "no-rsync";
// With the time that a copy takes, a change is in the history within a minute.
constexpr int betweenWalks = 40'000;
constexpr int firstCopyLimit = 1000;
// After the device's end, for a copy that is being made.
constexpr int lastPatience = 3000;
constexpr std::size_t mostAsked = 64;
// The walk opens a descriptor for each level of folders.
constexpr rlim_t neededDescriptors = 4096;

struct Keeper {
  const HistoryFolder& history_;
  int var_;
  const HistoryTools& tools_;
  // To the application, or -1; to the launcher.
  int socket_;
  int launcher_;
  // The process that takes a copy; 0 where none does.
  pid_t copying_ = 0;
  Descriptor copyingEnd_{};
  std::int64_t nextWalk_ = 0;
  // Who asked for the copy that is being taken, and for the next.
  std::vector<std::uint32_t> served_{};
  std::vector<std::uint32_t> waiting_{};

  void keep() {
    startCopying(Insistence::Gaps);
    while (true) {
      pollfd watched[] = {{launcher_, POLLIN, 0}, {socket_, POLLIN, 0}, {copyingEnd_.get(), POLLIN, 0}};
      const auto left = std::max<std::int64_t>(0, nextWalk_ - history::milliseconds());
      const int ready = poll(watched, 3, copying_ > 0 ? -1 : static_cast<int>(left));
      if (ready < 0 && errno != EINTR) return;
      // What comes after the launcher's end is not the device's any more.
      if (watched[0].revents != 0) break;
      if (watched[2].revents != 0) finishCopying();
      if (watched[1].revents != 0) takeRequest();
      if (copying_ <= 0 && (!waiting_.empty() || history::milliseconds() >= nextWalk_))
        startCopying(waiting_.empty() ? Insistence::Changes : Insistence::Gaps);
    }
    abandonCopying();
    takeCopy(history_, var_, tools_, Insistence::Gaps);
    partMoved(history_, tools_);
  }

  // In a process of its own, so that requests about backups need not wait for it.
  void startCopying(Insistence insistence) {
    served_.swap(waiting_);
    waiting_.clear();
    copying_ = fork();
    if (copying_ == 0) {
      try {
        takeCopy(history_, var_, tools_, insistence);
        if (insistence == Insistence::Changes) partMoved(history_, tools_);
      } catch (const std::exception&) {
      }
      _exit(0);
    }
    copyingEnd_ = endOf(copying_);
    if (!copyingEnd_) finishCopying();
  }

  // A copy from before the device's end may wait for a pipe that a build put in a file's place, and nobody
  // writes to it any more. The last one finds all as it stays.
  void abandonCopying() {
    if (copying_ <= 0) return;
    pollfd end{copyingEnd_.get(), POLLIN, 0};
    if (poll(&end, 1, lastPatience) <= 0) kill(copying_, SIGKILL);
    waitpid(copying_, nullptr, 0);
  }

  void finishCopying() {
    if (copying_ > 0) waitpid(copying_, nullptr, 0);
    copying_ = 0;
    copyingEnd_.close();
    shutdown(launcher_, SHUT_WR);
    nextWalk_ = history::milliseconds() + betweenWalks;
    for (const auto number : served_) answer(number);
    served_.clear();
  }

  // Trusts nothing that comes: the application may have been taken over.
  void takeRequest() {
    history::Request request{};
    const ssize_t got = recv(socket_, &request, sizeof request, MSG_DONTWAIT | MSG_TRUNC);
    if (got < 0 && errno == EAGAIN) return;
    if (got <= 0) {
      socket_ = -1;
      return;
    }
    if (got != static_cast<ssize_t>(sizeof request)) return;
    switch (request.wish) {
      case history::Wish::Copy:
        if (waiting_.size() < mostAsked) waiting_.push_back(request.number);
        return;
      case history::Wish::BeginBackup:
        // The rest of the second is for the way back.
        if (history::milliseconds() + history::patienceMilliseconds / 10 >= request.deadline) return;
        history_.beginBackup(var_, {request.name, strnlen(request.name, sizeof request.name)});
        break;
      case history::Wish::FinishBackup:
        history_.finishBackup();
        break;
      case history::Wish::UndoBackup:
        try {
          history_.undoBackup(var_);
        } catch (const Refusal&) {
          // The next start tries again.
        }
        break;
      default:
        return;
    }
    answer(request.number);
  }

  void answer(std::uint32_t number) const {
    const history::Answer answer{number};
    send(socket_, &answer, sizeof answer, MSG_DONTWAIT | MSG_NOSIGNAL);
  }
};

// Everything of the launcher's but `kept` goes: the device's lock, too, and the caller's terminal.
void partFromLauncher(std::vector<int> kept) {
  setsid();
  for (int number : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) signal(number, SIG_DFL);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  signal(SIGPIPE, SIG_IGN);
  std::sort(kept.begin(), kept.end());
  int first = 0;
  for (int one : kept) {
    if (one > first) syscall(SYS_close_range, first, one - 1, 0);
    first = std::max(first, one + 1);
  }
  syscall(SYS_close_range, first, ~0U, 0);
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  for (int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nothing, stream);
  close(nothing);
  if (chdir("/") != 0) _exit(1);
  rlimit descriptors{};
  getrlimit(RLIMIT_NOFILE, &descriptors);
  descriptors.rlim_cur = std::max(descriptors.rlim_cur, std::min(descriptors.rlim_max, neededDescriptors));
  setrlimit(RLIMIT_NOFILE, &descriptors);
}

void sayOnceThatRsyncIsMissing(const HistoryFolder& history, bool isMissing) {
  if (!isMissing) {
    unlinkat(history.folder(), missingIsSaid, 0);
  } else if (const Descriptor said(
                 openat(history.folder(), missingIsSaid, O_CREAT | O_EXCL | O_CLOEXEC, 0600));
             said) {
    say("rsync is not installed, and no history of the projects is kept; install it with \"apt install "
        "rsync\".");
  }
}

}  // namespace

HistoryKeeper::HistoryKeeper(bool servesApplication) {
  if (servesApplication) sockets_ = connectApplication(history::applicationDescriptor);
}

void HistoryKeeper::start(int device, int var, const HistoryTools& tools, bool undoesBackup) {
  std::optional<HistoryFolder> history;
  try {
    history.emplace(device);
    // Inherited by the process: nobody else takes it, and who wants the last copy waits for it.
    flock(history->folder(), LOCK_SH | LOCK_NB);
    sayOnceThatRsyncIsMissing(*history, tools.rsync.empty());
    if (undoesBackup) history->undoBackup(var);
  } catch (const Refusal& refusal) {
    say(refusal.what());
    if (!history) return;
  }
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
    return say(std::string("No history is kept: ") + std::strerror(errno) + ".");
  process_ = Descriptor(ends[0]);
  const Descriptor launcher(ends[1]);
  if (fork() != 0) return;
  partFromLauncher({STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO, history->folder(), var, sockets_.own.get(),
                    launcher.get()});
  try {
    Keeper{*history, var, tools, sockets_.own.get(), launcher.get()}.keep();
  } catch (const std::exception&) {
  }
  _exit(0);
}

void HistoryKeeper::awaitFirstCopy() const {
  pollfd end{process_.get(), POLLIN, 0};
  poll(&end, 1, firstCopyLimit);
}
