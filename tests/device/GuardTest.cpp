// What a build can and cannot do: this program runs under the guard. Every refusal has a neighbour that is
// allowed, so that a broken set-up does not look like a wall. That nothing gets out is tried in
// tests/confinement, where another wall of the device may stop it; here the filter has to answer by itself.
#include "support/Shell.h"

#include <cerrno>
#include <fcntl.h>
#include <linux/sched.h>
#include <sched.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace {

// 0 where the call succeeds. The arguments that are not given are zeroes, not what a register holds.
int errorOf(long call, long first = 0, long second = 0, long third = 0, void* fourth = nullptr) {
  return syscall(call, first, second, third, fourth, 0L, 0L) < 0 ? errno : 0;
}

TEST(Guard, OnlyInternetSocketsAndConnectedPairsExist) {
  // The kernel looks at the low half only.
  for (const long family : {0x100000000L | AF_UNIX, long{AF_UNIX}, long{AF_NETLINK}, long{AF_VSOCK},
                            long{AF_ALG}, long{AF_PACKET}, long{AF_BLUETOOTH}, long{AF_KEY}, long{AF_XDP}}) {
    EXPECT_EQ(errorOf(SYS_socket, family, SOCK_STREAM), EAFNOSUPPORT) << family;
    EXPECT_EQ(errorOf(SYS_socket, family, SOCK_DGRAM), EAFNOSUPPORT) << family;
  }
  for (const int family : {AF_INET, AF_INET6}) EXPECT_EQ(errorOf(SYS_socket, family, SOCK_STREAM), 0);
  int pair[2];
  for (long type = 0; type < 16; ++type) {
    const bool isOpen = type == SOCK_STREAM || type == SOCK_SEQPACKET;
    EXPECT_EQ(errorOf(SYS_socketpair, AF_UNIX, type | SOCK_CLOEXEC, 0, pair), isOpen ? 0 : EAFNOSUPPORT)
        << type;
  }
}

TEST(Guard, NothingCanBeTypedIntoATerminal) {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_GE(terminal, 0);
  char key = 'x';
  for (const unsigned long request : {0x5412UL, 0x5412UL | 1UL << 32, 0x541cUL, 0x541cUL | 1UL << 40})
    EXPECT_EQ(syscall(SYS_ioctl, terminal, request, &key) < 0 ? errno : 0, EPERM) << request;
  winsize size{};
  EXPECT_EQ(ioctl(terminal, TIOCGWINSZ, &size), 0);
  close(terminal);
}

TEST(Guard, CallsAreRefusedOrAnsweredAsIfTheKernelHadNone) {
  for (const long flag : {CLONE_NEWUSER, CLONE_NEWNS, CLONE_NEWPID, CLONE_NEWNET}) {
    EXPECT_EQ(errorOf(SYS_unshare, flag), EPERM) << flag;
    EXPECT_EQ(errorOf(SYS_clone, flag | SIGCHLD), EPERM) << flag;
  }
  // Where libraries fall back to an older way, and what is newer than the filter.
  for (const long call :
       {long{SYS_fsopen}, long{SYS_open_tree}, long{SYS_move_mount}, long{SYS_mount_setattr},
        long{SYS_clone3}, long{SYS_io_uring_setup}, long{SYS_io_uring_enter}, 451L, 462L, 4000L}) {
    EXPECT_EQ(errorOf(call), ENOSYS) << call;
  }
  EXPECT_EQ(errorOf(SYS_getpid), 0);
  EXPECT_EQ(errorOf(SYS_prctl, 1000000), EINVAL);
  std::thread([] {}).join();
}

TEST(Guard, FilesOfEveryOrdinaryKindCanBeMade) {
  EXPECT_EQ(
      outputOf("cd $(mktemp -d) && mkdir a b && echo x > a/f && mv a/f b/ && ln -s f b/l && mkfifo p && "
               "ln b/f h && cat b/l h && mv b a/ && ls a/b"),
      "x\nx\nf\nl\n");
  EXPECT_NE(mknod("/tmp/device-node", S_IFCHR | 0600, 0x103), 0);
}

TEST(Guard, TheShellIsTheOneThatPhonesHaveUnderOneFilter) {
  EXPECT_EQ(outputOf("echo -e 'a\\tb'; echo $0; umask; pwd"), "a\tb\nsh\n0022\n/\n");
  EXPECT_EQ(system("exit 42") >> 8, 42);
  EXPECT_EQ(system("kill -9 $$"), 9);
  const std::string count = "grep Seccomp_filters: /proc/self/status";
  EXPECT_EQ(outputOf("sh -c '/bin/sh -c \"exec sh -c \\\"" + count + "\\\"\"'"), outputOf(count));
  // Descriptors pass between shells of a build, as make's job slots do.
  EXPECT_EQ(outputOf("exec 7<<< handed; sh -c 'cat <&7'"), "handed\n");
}

TEST(Guard, ABuildSteersAndLimitsItselfAndNobodyElse) {
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  for (const long self : {0L, long{getpid()}}) {
    const int answer = self == 0 ? 0 : EPERM;
    EXPECT_EQ(errorOf(SYS_prlimit64, self, RLIMIT_FSIZE, reinterpret_cast<long>(&limit)), answer);
    EXPECT_EQ(errorOf(SYS_setpriority, PRIO_PROCESS, self, 0), answer);
    EXPECT_EQ(errorOf(SYS_setpriority, PRIO_PGRP, self, 0), EPERM);
    EXPECT_EQ(errorOf(SYS_ioprio_set, 1, self, 0), answer);
  }
  EXPECT_EQ(prlimit(getpid(), RLIMIT_FSIZE, nullptr, &limit), 0) << "only looks";
  EXPECT_EQ(outputOf("nice -n 3 nice; taskset 1 echo on; ulimit -c 0 && ulimit -c; renice -n 4 $$ 2> "
                     "/dev/null || echo off"),
            "3\non\n0\noff\n");
  getrlimit(RLIMIT_NPROC, &limit);
  EXPECT_LE(limit.rlim_max, 4096U);
  getrlimit(RLIMIT_CORE, &limit);
  EXPECT_EQ(limit.rlim_cur, 1U);
}

}  // namespace
