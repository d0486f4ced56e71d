// Writes the guard's system call filter as a C++ table, at build time, so that the guard has nothing to
// compute.
#include "device/guard/Contract.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <initializer_list>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/sched.h>
#include <linux/seccomp.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include <seccomp.h>

namespace {

// set_mempolicy_home_node: the last call that was weighed when the lists below were written. What a newer
// kernel adds is answered as unknown, and libraries fall back.
constexpr std::uint32_t lastKnownCall = 450;

#if defined(__x86_64__)
constexpr std::uint32_t nativeArchitecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t nativeArchitecture = AUDIT_ARCH_AARCH64;
#else
#error "The filter has not been written for this processor."
#endif

// The kernel takes these arguments as 32 bits, so the upper half must not decide.
constexpr scmp_datum_t low32 = 0xffffffffU;

void must(int result) {
  if (result < 0) {
    std::fprintf(stderr, "filter: %d\n", result);
    std::exit(1);
  }
}

void refuse(scmp_filter_ctx filter, int error, std::initializer_list<const char*> calls) {
  for (const char* name : calls) {
    const int call = seccomp_syscall_resolve_name(name);
    if (call == __NR_SCMP_ERROR) must(-ENOSYS);
    must(seccomp_rule_add(filter, SCMP_ACT_ERRNO(error), call, 0));
  }
}

void refuseArgument(scmp_filter_ctx filter, int error, int call, unsigned argument, scmp_datum_t mask,
                    scmp_datum_t value) {
  must(seccomp_rule_add(filter, SCMP_ACT_ERRNO(error), call, 1,
                        scmp_arg_cmp{argument, SCMP_CMP_MASKED_EQ, mask, value}));
}

// Only the internet families stay: local sockets lead to the display, to buses and to agents. Of their
// protocols only the usual ones do: the others bring rarely used code of the kernel in, even as modules.
void refuseSockets(scmp_filter_ctx filter) {
  for (scmp_datum_t family = 0; family < 64; ++family) {
    if (family != AF_UNIX) refuseArgument(filter, EAFNOSUPPORT, SCMP_SYS(socketpair), 0, low32, family);
    if (family == AF_INET || family == AF_INET6) continue;
    refuseArgument(filter, EAFNOSUPPORT, SCMP_SYS(socket), 0, low32, family);
  }
  constexpr scmp_datum_t smallProtocols = 64;
  for (scmp_datum_t protocol = 1; protocol < smallProtocols; ++protocol) {
    const bool isUsual = protocol == IPPROTO_TCP || protocol == IPPROTO_UDP || protocol == IPPROTO_ICMP ||
                         protocol == IPPROTO_ICMPV6;
    if (!isUsual) refuseArgument(filter, EPROTONOSUPPORT, SCMP_SYS(socket), 2, low32, protocol);
  }
  must(seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPROTONOSUPPORT), SCMP_SYS(socket), 1,
                        scmp_arg_cmp{2, SCMP_CMP_GE, smallProtocols, 0}));
  // make and perl use pairs. These two types only send to each other; one of datagrams, which the kernel also
  // makes of SOCK_RAW, can send to any socket of the host.
  constexpr scmp_datum_t types = 0xf;
  for (scmp_datum_t type = 0; type <= types; ++type) {
    if (type == SOCK_STREAM || type == SOCK_SEQPACKET) continue;
    refuseArgument(filter, EAFNOSUPPORT, SCMP_SYS(socketpair), 1, types, type);
  }
}

// The application has the same user, so a build could otherwise stop it with a limit or slow it down.
void refuseSteeringOthers(scmp_filter_ctx filter) {
  const auto refuseUnless = [filter](int call, unsigned argument, scmp_datum_t value) {
    must(seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), call, 1,
                          scmp_arg_cmp{argument, SCMP_CMP_NE, value, 0}));
  };
  must(seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), SCMP_SYS(prlimit64), 2,
                        scmp_arg_cmp{0, SCMP_CMP_NE, 0, 0}, scmp_arg_cmp{2, SCMP_CMP_NE, 0, 0}));
  for (int call : {SCMP_SYS(sched_setaffinity), SCMP_SYS(sched_setscheduler), SCMP_SYS(sched_setparam),
                   SCMP_SYS(sched_setattr)}) {
    refuseUnless(call, 0, 0);
  }
  constexpr scmp_datum_t oneProcess = 1;  // IOPRIO_WHO_PROCESS
  refuseUnless(SCMP_SYS(setpriority), 0, PRIO_PROCESS);
  refuseUnless(SCMP_SYS(setpriority), 1, 0);
  refuseUnless(SCMP_SYS(ioprio_set), 0, oneProcess);
  refuseUnless(SCMP_SYS(ioprio_set), 1, 0);
}

// Whoever opens a file with a lease waits for its holder, by default 45 seconds: the application's window
// would freeze, and so would the history.
void refuseLeases(scmp_filter_ctx filter) {
  constexpr scmp_datum_t setDelegation = F_SETLEASE + 16;  // F_SETDELEG, the same for folders
  for (scmp_datum_t command : {scmp_datum_t{F_SETLEASE}, setDelegation})
    refuseArgument(filter, EINVAL, SCMP_SYS(fcntl), 1, low32, command);
}

// Counted for the user or the machine as a whole, so that a build could use up what the host's programs need.
void refuseSharedCounts(scmp_filter_ctx filter) {
  refuse(filter, EMFILE, {"inotify_init", "inotify_init1"});
  refuseArgument(filter, EPERM, SCMP_SYS(fcntl), 1, low32, F_SETPIPE_SZ);
  refuse(filter, ENOSYS, {"io_setup"});
  // The starter's limit of 1 keeps core dumps from the host's collector, and 0 would not. Compilers set 0 for
  // themselves and some programs end when they cannot, so the call does nothing and succeeds.
  refuseArgument(filter, 0, SCMP_SYS(setrlimit), 0, low32, RLIMIT_CORE);
  must(seccomp_rule_add(filter, SCMP_ACT_ERRNO(0), SCMP_SYS(prlimit64), 3, scmp_arg_cmp{0, SCMP_CMP_EQ, 0, 0},
                        scmp_arg_cmp{1, SCMP_CMP_MASKED_EQ, low32, RLIMIT_CORE},
                        scmp_arg_cmp{2, SCMP_CMP_NE, 0, 0}));
}

void refuseTerminalControls(scmp_filter_ctx filter) {
  // The other line disciplines are old drivers for modems, which the kernel loads when asked.
  refuseArgument(filter, EPERM, SCMP_SYS(ioctl), 1, low32, TIOCSETD);
  constexpr scmp_datum_t linuxConsole = 0x541c;  // TIOCLINUX
  refuseArgument(filter, EPERM, SCMP_SYS(ioctl), 1, low32, TIOCSTI);
  refuseArgument(filter, EPERM, SCMP_SYS(ioctl), 1, low32, linuxConsole);
}

void refuseNamespacesAndMounts(scmp_filter_ctx filter) {
  for (scmp_datum_t flag : {CLONE_NEWUSER, CLONE_NEWNS, CLONE_NEWPID, CLONE_NEWNET, CLONE_NEWIPC,
                            CLONE_NEWUTS, CLONE_NEWCGROUP, CLONE_NEWTIME}) {
    // clone() carries the exit signal in the bits of the time namespace's flag, so that flag means
    // unshare() only.
    if (flag != CLONE_NEWTIME) refuseArgument(filter, EPERM, SCMP_SYS(clone), 0, flag, flag);
  }
  refuse(filter, EPERM, {"unshare", "setns", "mount", "umount2", "pivot_root", "chroot"});
  // clone3 hides its flags behind a pointer; libraries fall back to clone where it is unknown.
  refuse(filter, ENOSYS,
         {"clone3", "open_tree", "move_mount", "fsopen", "fsconfig", "fsmount", "fspick", "mount_setattr"});
}

void refuseKernelInterfaces(scmp_filter_ctx filter) {
  refuse(filter, ENOSYS, {"io_uring_setup", "io_uring_enter", "io_uring_register"});
  refuse(filter, EPERM,
         {"keyctl", "add_key", "request_key",
          // other processes' memory and descriptors
          "ptrace", "process_vm_readv", "process_vm_writev", "process_madvise", "pidfd_getfd", "kcmp",
          // what container engines refuse as well
          "acct", "bpf", "perf_event_open", "userfaultfd", "fanotify_init", "open_by_handle_at",
          "name_to_handle_at", "lookup_dcookie", "quotactl", "quotactl_fd", "swapon", "swapoff", "syslog",
          "reboot", "kexec_load", "kexec_file_load", "init_module", "finit_module", "delete_module",
          "settimeofday", "clock_settime", "clock_adjtime", "adjtimex", "vhangup", "iopl", "ioperm",
          "modify_ldt", "personality", "sethostname", "setdomainname", "sysfs", "uselib", "ustat", "mbind",
          "get_mempolicy", "set_mempolicy", "move_pages", "migrate_pages"});
}

void answerProbe(scmp_filter_ctx filter) {
  must(seccomp_rule_add(filter, SCMP_ACT_ERRNO(guard::probeAnswer), SCMP_SYS(prctl), 2,
                        scmp_arg_cmp{0, SCMP_CMP_EQ, guard::probeOperation, 0},
                        scmp_arg_cmp{1, SCMP_CMP_EQ, guard::probeArgument, 0}));
}

std::vector<sock_filter> exported(scmp_filter_ctx filter) {
  const int memory = memfd_create("filter", 0);
  must(memory);
  must(seccomp_export_bpf(filter, memory));
  const off_t size = lseek(memory, 0, SEEK_END);
  std::vector<sock_filter> program(static_cast<std::size_t>(size) / sizeof(sock_filter));
  must(static_cast<int>(pread(memory, program.data(), static_cast<std::size_t>(size), 0)));
  close(memory);
  return program;
}

// The library compares no ranges of call numbers, so the test for unknown calls is put in front of what it
// makes.
void write(const std::vector<sock_filter>& program) {
  const std::array<sock_filter, 5> unknownCalls{{
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, nativeArchitecture, 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JGT | BPF_K, lastKnownCall, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
  }};
  const auto line = [](const sock_filter& step) {
    std::printf("    {0x%x, %u, %u, 0x%x},\n", unsigned{step.code}, unsigned{step.jt}, unsigned{step.jf},
                unsigned{step.k});
  };
  std::puts("// Made by makeFilter.cpp.\n#pragma once\n\n#include <linux/filter.h>\n");
  std::puts("constexpr sock_filter filterProgram[] = {");
  for (const auto& step : unknownCalls) line(step);
  for (const auto& step : program) line(step);
  std::puts("};");
}

}  // namespace

int main() {
  scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
  if (filter == nullptr) return 1;
  // A program for another processor mode would pass by every rule.
  must(seccomp_attr_set(filter, SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_KILL_PROCESS));
  must(seccomp_attr_set(filter, SCMP_FLTATR_CTL_OPTIMIZE, 2));
  refuseSockets(filter);
  refuseSteeringOthers(filter);
  refuseSharedCounts(filter);
  refuseLeases(filter);
  refuseTerminalControls(filter);
  refuseNamespacesAndMounts(filter);
  refuseKernelInterfaces(filter);
  answerProbe(filter);
  write(exported(filter));
  seccomp_release(filter);
  return std::fflush(stdout) == 0 ? 0 : 1;
}
