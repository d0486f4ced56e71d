// What a build can and cannot do: this program runs under the guard. Every refusal has a neighbour that is
// allowed, so that a broken set-up does not look like a wall. That nothing gets out is tried in
// tests/confinement, where another wall of the device may stop it; here the filter has to answer by itself.
#include "support/Shell.h"

#include <cerrno>
#include <linux/sched.h>
#include <sched.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

// 0 where the call succeeds. The arguments that are not given are zeroes, not what a register holds.
int errorOf(long call, long first = 0, long second = 0, long third = 0, void* fourth = nullptr) {
  return syscall(call, first, second, third, fourth, 0L, 0L) < 0 ? errno : 0;
}

TEST(Guard, OnlyInternetSocketsAndConnectedPairsExist) {
  // The kernel looks at the low half only.
  for (const long family : {0x100000000L | AF_UNIX, long{AF_UNIX}, long{AF_NETLINK}, long{AF_VSOCK},
                            long{AF_ALG}, long{AF_PACKET}, long{AF_BLUETOOTH}, long{AF_KEY}, long{AF_XDP}})
    EXPECT_EQ(errorOf(SYS_socket, family, SOCK_STREAM), EAFNOSUPPORT) << family;
  for (const int family : {AF_INET, AF_INET6}) EXPECT_EQ(errorOf(SYS_socket, family, SOCK_STREAM), 0);
  int pair[2];
  for (long type = 0; type < 16; ++type) {
    const bool isOpen = type == SOCK_STREAM || type == SOCK_SEQPACKET;
    EXPECT_EQ(errorOf(SYS_socketpair, AF_UNIX, type | SOCK_CLOEXEC, 0, pair), isOpen ? 0 : EAFNOSUPPORT)
        << type;
  }
}

TEST(Guard, LibrariesFallBackToOlderWays) {
  // What is newer than the filter is answered as if the kernel had it not.
  for (const long call :
       {long{SYS_fsopen}, long{SYS_open_tree}, long{SYS_move_mount}, long{SYS_mount_setattr},
        long{SYS_clone3}, long{SYS_io_uring_setup}, long{SYS_io_uring_enter}, 451L, 462L, 4000L})
    EXPECT_EQ(errorOf(call), ENOSYS) << call;
  EXPECT_EQ(errorOf(SYS_unshare, CLONE_NEWNS), EPERM);
  EXPECT_EQ(errorOf(SYS_prctl, 1000000), EINVAL);
  std::thread([] {}).join();
}

TEST(Guard, FilesOfEveryOrdinaryKindCanBeMade) {
  EXPECT_EQ(
      outputOf("cd $(mktemp -d) && mkdir a b && echo x > a/f && mv a/f b/ && ln -s f b/l && mkfifo p && "
               "ln b/f h && cat b/l h && mv b a/ && ls a/b"),
      "x\nx\nf\nl\n");
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

TEST(Guard, ABuildSteersAndLimitsItself) {
  rlimit limit{};
  EXPECT_EQ(prlimit(getpid(), RLIMIT_FSIZE, nullptr, &limit), 0) << "only looks";
  EXPECT_EQ(outputOf("echo $(($(nice -n 3 nice) - $(nice))); taskset 1 echo on; ulimit -c 0 && ulimit -c; "
                     "renice -n 4 $$ 2> "
                     "/dev/null || echo off; ulimit -Hu"),
            "3\non\n0\noff\n4096\n");
}

}  // namespace
