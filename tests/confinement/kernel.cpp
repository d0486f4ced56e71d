#include "confinement/Attempt.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <ctime>
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
#include <unistd.h>

namespace {

using Control = Attempt::Control;

constexpr const char* kNamespaces = "No namespace or mount can be made";
constexpr const char* kKeys = "The caller's keys stay outside";
constexpr const char* kInterfaces = "The kernel's corners are closed";

template <int Flags>
bool unshares() {
  return inChild([] { return unshare(Flags) == 0; });
}

template <int Flags>
bool clonesInto() {
  const long child =
      syscall(SYS_clone, static_cast<unsigned long>(Flags) | SIGCHLD, nullptr, nullptr, nullptr, 0);
  if (child == 0) _exit(0);
  if (child > 0) waitpid(static_cast<pid_t>(child), nullptr, 0);
  return child > 0;
}

bool clonesByItsSuccessor() {
  clone_args arguments{};
  arguments.flags = CLONE_NEWUSER;
  arguments.exit_signal = SIGCHLD;
  const long child = syscall(SYS_clone3, &arguments, sizeof arguments);
  if (child == 0) _exit(0);
  if (child > 0) waitpid(static_cast<pid_t>(child), nullptr, 0);
  return child > 0;
}

bool mountsInNamespace() {
  return inChild([] {
    return unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 &&
           mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("none", "/tmp", "tmpfs", 0, nullptr) == 0;
  });
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

bool setsPersonality() {
  constexpr unsigned long kSameAddresses = 0x0040000;
  return inChild([] { return syscall(SYS_personality, kSameAddresses) >= 0; });
}

// The processor's older way in, which a filter for the newer one does not see.
bool callsTheOldWay() {
#if defined(__x86_64__)
  return inChild([] {
    constexpr long kGetProcess = 20;
    long result = kGetProcess;
    asm volatile("int $0x80" : "+a"(result) : : "memory", "r8", "r9", "r10", "r11");
    return result > 0;
  });
#else
  return false;
#endif
}

// The same call with the bit of the x32 table in its number.
bool callsThroughX32() {
  constexpr long kX32 = 0x40000000;
  return inChild([] { return syscall(kX32 | SYS_getpid) > 0; });
}

bool setsClock() {
  const timespec noTime{0, 2'000'000'000};
  return wasReached(syscall(SYS_clock_settime, CLOCK_REALTIME, &noTime));
}

// Calls that answer bad arguments where they can be reached.
template <long Number>
bool reaches() {
  return wasReached(syscall(Number, -1L, 0L, 0L, -1L, 0L, 0L));
}

template <int Family>
bool hasFamily() {
  return opened(socket(Family, SOCK_SEQPACKET, 0)) || opened(socket(Family, SOCK_RAW, 0)) ||
         opened(socket(Family, SOCK_DGRAM, 0));
}

}  // namespace

std::vector<Attempt> attemptsOnTheKernel() {
  return {
    {kNamespaces, "unshare users", Control::Everyone, unshares<CLONE_NEWUSER>},
        {kNamespaces, "unshare users and mounts", Control::Everyone, unshares<CLONE_NEWUSER | CLONE_NEWNS>},
        {kNamespaces, "unshare users and the network", Control::Everyone,
         unshares<CLONE_NEWUSER | CLONE_NEWNET>},
        {kNamespaces, "unshare mounts", Control::Root, unshares<CLONE_NEWNS>},
        {kNamespaces, "clone into new users", Control::Everyone, clonesInto<CLONE_NEWUSER>},
        {kNamespaces, "clone into new users and processes", Control::Everyone,
         clonesInto<CLONE_NEWUSER | CLONE_NEWPID>},
        {kNamespaces, "clone by the newer call", Control::Everyone, clonesByItsSuccessor},
        {kNamespaces, "mount in a namespace of one's own", Control::Everyone, mountsInNamespace},
        {kNamespaces, "mount", Control::Root,
         [] { return wasReached(mount("none", "/no such folder", "tmpfs", 0, nullptr)); }},
        {kNamespaces, "unmount", Control::Root, [] { return wasReached(umount2("/no such folder", 0)); }},
        {kNamespaces, "mount again for writing", Control::Root,
         [] {
           return wasReached(mount(nullptr, "/no such folder", nullptr, MS_REMOUNT | MS_BIND, nullptr));
         }},
        {kNamespaces, "change the root", Control::Root,
         [] { return inChild([] { return chroot("/") == 0; }); }},
        {kNamespaces, "swap the root", Control::Root,
         [] { return wasReached(syscall(SYS_pivot_root, "/no such folder", "/no such folder")); }},
        {kNamespaces, "open a file system", Control::Root,
         [] { return opened(static_cast<int>(syscall(SYS_fsopen, "tmpfs", 0))); }},
        {kNamespaces, "clone a tree of mounts", Control::Root,
         [] { return opened(static_cast<int>(syscall(SYS_open_tree, AT_FDCWD, "/tmp", OPEN_TREE_CLONE))); }},
        {kNamespaces, "move a mount", Control::Root, reaches<SYS_move_mount>},
        {kNamespaces, "change a mount", Control::Root, reaches<SYS_mount_setattr>},
        {kKeys, "read a key of the session", Control::Machine,
         [] { return readsKey(KEY_SPEC_SESSION_KEYRING); }},
        {kKeys, "read a key of the user", Control::Machine, [] { return readsKey(KEY_SPEC_USER_KEYRING); }},
        {kKeys, "add a key", Control::Machine,
         [] { return syscall(SYS_add_key, "user", "probe", "x", 1, KEY_SPEC_PROCESS_KEYRING) > 0; }},
        {kKeys, "ask for a key", Control::Machine,
         [] { return wasReached(syscall(SYS_request_key, "user", "no such key", nullptr, 0)); }},
        {kInterfaces, "trace a child", Control::Everyone,
         [] { return inChild([] { return ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0; }); }},
        {kInterfaces, "copy memory between processes", Control::Machine, readsOwnMemory},
        {kInterfaces, "write another process's memory", Control::Machine, reaches<SYS_process_vm_writev>},
        {kInterfaces, "advise on another process's memory", Control::Machine, reaches<SYS_process_madvise>},
        {kInterfaces, "change the personality", Control::Everyone, setsPersonality},
        {kInterfaces, "make a ring of calls", Control::Machine, reaches<SYS_io_uring_setup>},
        {kInterfaces, "load a program into the kernel", Control::Root, reaches<SYS_bpf>},
        {kInterfaces, "count events", Control::Machine, reaches<SYS_perf_event_open>},
        {kInterfaces, "serve page faults", Control::Machine, reaches<SYS_userfaultfd>},
        {kInterfaces, "watch a file system", Control::Machine, reaches<SYS_fanotify_init>},
        {kInterfaces, "open files by handles", Control::Root, reaches<SYS_open_by_handle_at>},
        {kInterfaces, "make file handles", Control::Everyone, reaches<SYS_name_to_handle_at>},
        {kInterfaces, "read the kernel's log", Control::Root,
         [] {
           constexpr int kSize = 10;
           return syscall(SYS_syslog, kSize, nullptr, 0) >= 0;
         }},
        {kInterfaces, "place memory", Control::Machine, reaches<SYS_mbind>},
        {kInterfaces, "move pages", Control::Machine, reaches<SYS_move_pages>},
        {kInterfaces, "move another process's pages", Control::Machine, reaches<SYS_migrate_pages>},
        {kInterfaces, "ask where memory is placed", Control::Machine, reaches<SYS_get_mempolicy>},
        {kInterfaces, "say where memory is placed", Control::Machine, reaches<SYS_set_mempolicy>},
        {kInterfaces, "keep accounts", Control::Root, reaches<SYS_acct>},
        {kInterfaces, "set quotas", Control::Machine, reaches<SYS_quotactl>},
        {kInterfaces, "set quotas through a file", Control::Machine, reaches<SYS_quotactl_fd>},
        {kInterfaces, "swap", Control::Root,
         [] { return wasReached(syscall(SYS_swapon, "/no such file", 0)); }},
        {kInterfaces, "stop swapping", Control::Root,
         [] { return wasReached(syscall(SYS_swapoff, "/no such file")); }},
        {kInterfaces, "restart the machine", Control::Root, reaches<SYS_reboot>},
        {kInterfaces, "load a module", Control::Machine, reaches<SYS_init_module>},
        {kInterfaces, "load a module from a file", Control::Machine, reaches<SYS_finit_module>},
        {kInterfaces, "remove a module", Control::Machine,
         [] { return wasReached(syscall(SYS_delete_module, "no_such_module", O_NONBLOCK)); }},
        {kInterfaces, "load another kernel", Control::Machine, reaches<SYS_kexec_load>},
        {kInterfaces, "load another kernel from a file", Control::Machine, reaches<SYS_kexec_file_load>},
        {kInterfaces, "set the clock", Control::Root, setsClock},
        {kInterfaces, "set the clock by the older call", Control::Machine, reaches<SYS_settimeofday>},
        {kInterfaces, "bend the clock", Control::Machine, reaches<SYS_clock_adjtime>},
        {kInterfaces, "bend the clock by the older call", Control::Machine, reaches<SYS_adjtimex>},
        {kInterfaces, "name the host", Control::Root,
         [] { return wasReached(syscall(SYS_sethostname, nullptr, -1)); }},
        {kInterfaces, "a protocol that few use", Control::Machine,
         [] { return opened(socket(AF_INET, SOCK_STREAM, IPPROTO_MPTCP)); }},
        {kInterfaces, "a modem's line discipline", Control::Machine,
         [] {
           constexpr int kNone = 27;
           const int terminal = open("/dev/ptmx", O_RDWR | O_NOCTTY);
           const bool through = ioctl(terminal, TIOCSETD, &kNone) == 0;
           const int error = errno;
           close(terminal);
           errno = error;
           return through;
         }},
        {kInterfaces, "encrypt through a socket", Control::Machine, hasFamily<AF_ALG>},
        {kInterfaces, "a socket for keys", Control::Machine, hasFamily<AF_KEY>},
        {kInterfaces, "a socket for radio", Control::Machine, hasFamily<AF_BLUETOOTH>},
#if defined(__x86_64__)
        {kInterfaces, "change the segment table", Control::Machine, reaches<SYS_modify_ldt>},
        {kInterfaces, "reach the ports", Control::Machine,
         [] { return inChild([] { return wasReached(syscall(SYS_iopl, 0)); }); }},
        {kInterfaces, "reach some ports", Control::Machine, reaches<SYS_ioperm>},
        {kInterfaces, "ask for kinds of file systems", Control::Machine, reaches<SYS_sysfs>},
        {kInterfaces, "ask for a file system", Control::Machine, reaches<SYS_ustat>},
        {kInterfaces, "call as a program of the older processor", Control::Machine, callsTheOldWay},
        {kInterfaces, "call by another table", Control::Machine, callsThroughX32},
#endif
  };
}
