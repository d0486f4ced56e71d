#include "confinement/Attempt.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <linux/aio_abi.h>
#include <mqueue.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace {

// More than the device allows; a normal build never comes near.
constexpr int kManyProcesses = 4200;
// More than one user's build gets of what the kernel counts for the user.
constexpr int kManyForOneUser = 1200;
constexpr off_t kMemoryFile = off_t{600} << 20;

// They wait for the end of this pipe, which comes with this process.
bool makesTooManyProcesses() {
  int end[2];
  if (pipe(end) != 0) return false;
  int made = 0;
  for (; made < kManyProcesses; ++made) {
    const pid_t child = fork();
    if (child < 0) break;
    if (child == 0) {
      close(end[1]);
      char byte = 0;
      [[maybe_unused]] const ssize_t ended = read(end[0], &byte, 1);
      _exit(0);
    }
  }
  const int error = errno;
  close(end[1]);
  while (wait(nullptr) > 0) {
  }
  errno = error;
  return made == kManyProcesses;
}

bool fillsMemory(const char* folder) {
  const Descriptor file(open(folder, O_TMPFILE | O_WRONLY, 0600));
  return file && fallocate(file.get(), 0, 0, kMemoryFile) == 0;
}

// Ends with the process, which has blocked them.
bool queuesManySignals() {
  sigset_t one;
  sigemptyset(&one);
  sigaddset(&one, SIGRTMIN);
  sigprocmask(SIG_BLOCK, &one, nullptr);
  for (int count = 0; count < kManyForOneUser; ++count) {
    if (sigqueue(getpid(), SIGRTMIN, {}) != 0) return false;
  }
  return true;
}

bool sendsManyDescriptors() {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
  int pair[2];
  if (socketpair(AF_UNIX, SOCK_STREAM, 0, pair) != 0) return false;
  constexpr int kAtOnce = 200;
  alignas(cmsghdr) std::array<char, CMSG_SPACE(kAtOnce * sizeof(int))> space{};
  char byte = 0;
  iovec content{&byte, 1};
  msghdr message{};
  message.msg_iov = &content;
  message.msg_iovlen = 1;
  message.msg_control = space.data();
  message.msg_controllen = space.size();
  cmsghdr* const head = CMSG_FIRSTHDR(&message);
  head->cmsg_level = SOL_SOCKET;
  head->cmsg_type = SCM_RIGHTS;
  head->cmsg_len = CMSG_LEN(kAtOnce * sizeof(int));
  // Number 0, again and again.
  std::memset(CMSG_DATA(head), 0, kAtOnce * sizeof(int));
  for (int count = 0; count < kManyForOneUser; count += kAtOnce) {
    if (sendmsg(pair[0], &message, 0) != 1) return false;
  }
  return true;
}

// A collector behind a pipe is handed dumps whatever the limit, unless it is 1.
bool dumpsCore() {
  rlimit limit{};
  setrlimit(RLIMIT_CORE, &limit);
  return getrlimit(RLIMIT_CORE, &limit) == 0 && limit.rlim_cur != 1;
}

bool enlargesPipe() {
  int ends[2];
  return pipe(ends) == 0 && fcntl(ends[0], F_SETPIPE_SZ, 2 << 16) > 0;
}

bool setsUpReads() {
  aio_context_t reads = 0;
  return syscall(SYS_io_setup, 1, &reads) == 0 && syscall(SYS_io_destroy, reads) == 0;
}

bool makesQueue() {
  const std::string name = "/probe-" + std::to_string(getpid());
  return isOpened(mq_open(name.c_str(), O_CREAT | O_RDWR, 0600, nullptr)) && mq_unlink(name.c_str()) == 0;
}

}  // namespace

void tryTheMachine() {
  promise("The machine cannot be exhausted");
  attempt("4200 processes at once", Machine, inChild(makesTooManyProcesses));
  attempt("600 MiB in /tmp", Machine, fillsMemory("/tmp"));
  attempt("600 MiB of shared memory", Machine, fillsMemory("/dev/shm"));
  attempt("a core dump for the host's collector", Everyone, inChild(dumpsCore));
  attempt("a watch on files", Everyone, isOpened(inotify_init1(0)));
  attempt("a watch on files by the older call", Everyone, isOpened(inotify_init()));
  attempt("a larger pipe", Everyone, inChild(enlargesPipe));
  attempt("reads that the machine has few of", Machine, setsUpReads());
  attempt("1200 signals that wait", Machine, inChild(queuesManySignals));
  attempt("1200 descriptors on their way", Machine, inChild(sendsManyDescriptors));
  attempt("a queue for messages", Machine, makesQueue());
}
