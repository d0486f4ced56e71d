#include "confinement/Attempt.h"

#include <csignal>
#include <fcntl.h>
#include <linux/keyctl.h>
#include <linux/sched.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/wait.h>

namespace {

template <int Flags>
bool unshares() {
  return inChild([] { return unshare(Flags) == 0; });
}

// With a call that answers as fork() does.
bool clones(long child) {
  if (child == 0) _exit(0);
  if (child > 0) waitpid(static_cast<pid_t>(child), nullptr, 0);
  return child > 0;
}

bool clonesInto(unsigned long flags) {
  return clones(syscall(SYS_clone, flags | SIGCHLD, nullptr, nullptr, nullptr, 0));
}

bool clonesByItsSuccessor() {
  clone_args arguments{};
  arguments.flags = CLONE_NEWUSER;
  arguments.exit_signal = SIGCHLD;
  return clones(syscall(SYS_clone3, &arguments, sizeof arguments));
}

bool mountsInNamespace() {
  return unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 &&
         mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("none", "/tmp", "tmpfs", 0, nullptr) == 0;
}

bool readsKey(long keyring) {
  const long key = syscall(SYS_keyctl, KEYCTL_SEARCH, keyring, "user", given("key").c_str(), 0);
  char content[64];
  return key > 0 && syscall(SYS_keyctl, KEYCTL_READ, key, content, sizeof content) > 0;
}

bool readsOwnMemory() {
  char from = 'x';
  char to = 0;
  const iovec source{&from, 1};
  const iovec target{&to, 1};
  return process_vm_readv(getpid(), &target, 1, &source, 1, 0) == 1;
}

#if defined(__x86_64__)
// The processor's older way in, which a filter for the newer one does not see.
bool callsTheOldWay() {
  constexpr long kGetProcess = 20;
  long result = kGetProcess;
  asm volatile("int $0x80" : "+a"(result) : : "memory", "r8", "r9", "r10", "r11");
  return result > 0;
}

// The same call with the bit of the x32 table in its number.
bool callsThroughX32() {
  constexpr long kX32 = 0x40000000;
  return syscall(kX32 | SYS_getpid) > 0;
}
#endif

// Calls that answer bad arguments where they can be reached.
bool reaches(long number) {
  return wasReached(syscall(number, -1L, 0L, 0L, -1L, 0L, 0L));
}

bool hasFamily(int family) {
  return isOpened(socket(family, SOCK_SEQPACKET, 0)) || isOpened(socket(family, SOCK_RAW, 0)) ||
         isOpened(socket(family, SOCK_DGRAM, 0));
}

bool setsLineDiscipline() {
  constexpr int kNone = 27;
  return ioctl(Descriptor(open("/dev/ptmx", O_RDWR | O_NOCTTY)).get(), TIOCSETD, &kNone) == 0;
}

}  // namespace

void tryTheKernel() {
  promise("No namespace or mount can be made");
  attempt("unshare users", Everyone, unshares<CLONE_NEWUSER>());
  attempt("unshare users and mounts", Everyone, unshares<CLONE_NEWUSER | CLONE_NEWNS>());
  attempt("unshare users and the network", Everyone, unshares<CLONE_NEWUSER | CLONE_NEWNET>());
  attempt("unshare mounts", Root, unshares<CLONE_NEWNS>());
  attempt("clone into new users", Everyone, clonesInto(CLONE_NEWUSER));
  attempt("clone into new users and processes", Everyone, clonesInto(CLONE_NEWUSER | CLONE_NEWPID));
  attempt("clone by the newer call", Everyone, clonesByItsSuccessor());
  attempt("mount in a namespace of one's own", Everyone, inChild(mountsInNamespace));
  attempt("change the root", Root, inChild([] { return chroot("/") == 0; }));

  promise("The caller's keys stay outside");
  attempt("read a key of the session", Machine, readsKey(KEY_SPEC_SESSION_KEYRING));
  attempt("read a key of the user", Machine, readsKey(KEY_SPEC_USER_KEYRING));
  attempt("add a key", Machine, syscall(SYS_add_key, "user", "probe", "x", 1, KEY_SPEC_PROCESS_KEYRING) > 0);
  attempt("ask for a key", Machine, wasReached(syscall(SYS_request_key, "user", "no such key", nullptr, 0)));

  promise("The kernel's corners are closed");
#define CALL(number, control, way) attempt(way, control, reaches(SYS_##number));
#include "confinement/calls.inc"
  attempt("trace a child", Everyone,
          inChild([] { return ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0; }));
  attempt("copy memory between processes", Machine, readsOwnMemory());
  attempt("change the personality", Everyone,
          inChild([] { return syscall(SYS_personality, 0x0040000UL) >= 0; }));
  // 10 asks for its size.
  attempt("read the kernel's log", Root, syscall(SYS_syslog, 10, nullptr, 0) >= 0);
  attempt("name the host", Root, wasReached(syscall(SYS_sethostname, nullptr, -1)));
  attempt("a protocol that few use", Machine, isOpened(socket(AF_INET, SOCK_STREAM, IPPROTO_MPTCP)));
  attempt("a modem's line discipline", Machine, setsLineDiscipline());
  attempt("encrypt through a socket", Machine, hasFamily(AF_ALG));
  attempt("a socket for keys", Machine, hasFamily(AF_KEY));
  attempt("a socket for radio", Machine, hasFamily(AF_BLUETOOTH));
#if defined(__x86_64__)
  attempt("change the segment table", Machine, reaches(SYS_modify_ldt));
  attempt("reach the ports", Machine, inChild([] { return wasReached(syscall(SYS_iopl, 0)); }));
  attempt("reach some ports", Machine, reaches(SYS_ioperm));
  attempt("ask for kinds of file systems", Machine, reaches(SYS_sysfs));
  attempt("ask for a file system", Machine, reaches(SYS_ustat));
  attempt("call as a program of the older processor", Machine, inChild(callsTheOldWay));
  attempt("call by another table", Machine, inChild(callsThroughX32));
#endif
}
