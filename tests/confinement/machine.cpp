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
#include <unistd.h>

namespace {

using Control = Attempt::Control;

constexpr const char* kExhaustion = "The machine cannot be exhausted";

// More than the device allows; a normal build never comes near.
constexpr int kManyProcesses = 4200;
// More than one user's build gets of what the kernel counts for the user.
constexpr int kManyForOneUser = 1200;
constexpr off_t kMemoryFile = off_t{600} << 20;

bool makesTooManyProcesses() {
  return inChild([] {
    // They wait for the end of this pipe, which comes with this process.
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
  });
}

bool fillsMemory(const char* folder) {
  const int file = open(folder, O_TMPFILE | O_WRONLY, 0600);
  const bool through = file >= 0 && fallocate(file, 0, 0, kMemoryFile) == 0;
  const int error = errno;
  if (file >= 0) close(file);
  errno = error;
  return through;
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

}  // namespace

std::vector<Attempt> attemptsOnTheMachine() {
  return {
      {kExhaustion, "4200 processes at once", Control::Machine, makesTooManyProcesses},
      {kExhaustion, "600 MiB in /tmp", Control::Machine, [] { return fillsMemory("/tmp"); }},
      {kExhaustion, "600 MiB of shared memory", Control::Machine, [] { return fillsMemory("/dev/shm"); }},
      {kExhaustion, "a core dump for the host's collector", Control::Everyone,
       [] {
         // A collector behind a pipe is handed dumps whatever the limit, unless it is 1.
         return inChild([] {
           rlimit limit{};
           setrlimit(RLIMIT_CORE, &limit);
           return getrlimit(RLIMIT_CORE, &limit) == 0 && limit.rlim_cur != 1;
         });
       }},
      {kExhaustion, "a watch on files", Control::Everyone, [] { return opened(inotify_init1(0)); }},
      {kExhaustion, "a watch on files by the older call", Control::Everyone,
       [] { return opened(inotify_init()); }},
      {kExhaustion, "a larger pipe", Control::Everyone,
       [] {
         int ends[2];
         if (pipe(ends) != 0) return false;
         const bool through = fcntl(ends[0], F_SETPIPE_SZ, 2 << 16) > 0;
         const int error = errno;
         close(ends[0]);
         close(ends[1]);
         errno = error;
         return through;
       }},
      {kExhaustion, "reads that the machine has few of", Control::Machine,
       [] {
         aio_context_t reads = 0;
         if (syscall(SYS_io_setup, 1, &reads) != 0) return false;
         syscall(SYS_io_destroy, reads);
         return true;
       }},
      {kExhaustion, "1200 signals that wait", Control::Machine, [] { return inChild(queuesManySignals); }},
      {kExhaustion, "1200 descriptors on their way", Control::Machine,
       [] { return inChild(sendsManyDescriptors); }},
      {kExhaustion, "a queue for messages", Control::Machine,
       [] {
         const std::string name = "/probe-" + std::to_string(getpid());
         const mqd_t queue = mq_open(name.c_str(), O_CREAT | O_RDWR, 0600, nullptr);
         if (queue < 0) return false;
         mq_close(queue);
         mq_unlink(name.c_str());
         return true;
       }},
  };
}
