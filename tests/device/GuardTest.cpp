// What a build can and cannot do: this program runs under the guard. Every refusal has a neighbour that is
// allowed, so that a broken set-up does not look like a wall.
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <linux/sched.h>
#include <sched.h>
#include <stdlib.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

// 0 where the call succeeds.
int errorOf(long result) {
  return result < 0 ? errno : 0;
}

int errorOfSocket(int family, int type) {
  const int made = socket(family, type, 0);
  const int error = errorOf(made);
  if (made >= 0) close(made);
  return error;
}

std::string outputOf(const std::string& command) {
  std::string text;
  FILE* pipe = popen(command.c_str(), "r");
  for (int character = fgetc(pipe); character != EOF; character = fgetc(pipe))
    text.push_back(static_cast<char>(character));
  pclose(pipe);
  return text;
}

TEST(Guard, OnlyInternetSocketsAndConnectedPairsExist) {
  for (int family : {AF_UNIX, AF_NETLINK, AF_VSOCK, AF_ALG, AF_PACKET, AF_BLUETOOTH, AF_KEY, AF_XDP}) {
    EXPECT_EQ(errorOfSocket(family, SOCK_STREAM), EAFNOSUPPORT) << family;
    EXPECT_EQ(errorOfSocket(family, SOCK_DGRAM), EAFNOSUPPORT) << family;
  }
  // The kernel looks at the low half only.
  EXPECT_EQ(errorOf(syscall(SYS_socket, 0x100000000L | AF_UNIX, SOCK_STREAM, 0)), EAFNOSUPPORT);
  EXPECT_EQ(errorOfSocket(AF_INET, SOCK_STREAM), 0);
  EXPECT_EQ(errorOfSocket(AF_INET6, SOCK_STREAM), 0);
  int pair[2];
  EXPECT_EQ(errorOf(socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, pair)), EAFNOSUPPORT);
  ASSERT_EQ(errorOf(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair)), 0);
  EXPECT_EQ(write(pair[0], "x", 1), 1);
  close(pair[0]);
  close(pair[1]);
}

TEST(Guard, NothingCanBeTypedIntoATerminal) {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_GE(terminal, 0);
  char key = 'x';
  for (unsigned long request : {0x5412UL, 0x5412UL | 1UL << 32, 0x541cUL, 0x541cUL | 1UL << 40}) {
    EXPECT_EQ(errorOf(syscall(SYS_ioctl, terminal, request, &key)), EPERM) << request;
  }
  winsize size{};
  EXPECT_EQ(errorOf(ioctl(terminal, TIOCGWINSZ, &size)), 0);
  close(terminal);
}

TEST(Guard, NamespacesAndMountsAreRefused) {
  for (int flag : {CLONE_NEWUSER, CLONE_NEWNS, CLONE_NEWPID, CLONE_NEWNET}) {
    EXPECT_EQ(errorOf(unshare(flag)), EPERM) << flag;
    EXPECT_EQ(
        errorOf(syscall(SYS_clone, static_cast<unsigned long>(flag) | SIGCHLD, nullptr, nullptr, nullptr, 0)),
        EPERM)
        << flag;
  }
  EXPECT_EQ(errorOf(mount("none", "/tmp", "tmpfs", 0, nullptr)), EPERM);
  EXPECT_EQ(errorOf(umount("/tmp")), EPERM);
  for (long call : {SYS_fsopen, SYS_open_tree, SYS_move_mount, SYS_mount_setattr, SYS_clone3}) {
    EXPECT_EQ(errorOf(syscall(call, 0, 0, 0, 0, 0)), ENOSYS) << call;
  }
  std::thread([] {}).join();
  EXPECT_EQ(system("exit 3"), 3 << 8);
}

TEST(Guard, TheKernelsOtherDoorsAreShut) {
  for (long call :
       {SYS_keyctl, SYS_add_key, SYS_request_key, SYS_ptrace, SYS_process_vm_readv, SYS_process_vm_writev,
        SYS_bpf, SYS_perf_event_open, SYS_userfaultfd, SYS_open_by_handle_at, SYS_personality,
        SYS_init_module, SYS_kexec_load, SYS_syslog, SYS_pidfd_getfd}) {
    EXPECT_EQ(errorOf(syscall(call, 0, 0, 0, 0, 0, 0)), EPERM) << call;
  }
  // Newer than the filter, and io_uring: as if the kernel had none.
  for (long call : {SYS_io_uring_setup, SYS_io_uring_enter, 451, 462, 4000}) {
    EXPECT_EQ(errorOf(syscall(call, 0, 0, 0, 0, 0, 0)), ENOSYS) << call;
  }
  EXPECT_EQ(errorOf(syscall(SYS_getpid)), 0);
  EXPECT_EQ(errorOf(syscall(SYS_prctl, 1000000, 0, 0, 0, 0)), EINVAL);
}

TEST(Guard, FilesOfEveryOrdinaryKindCanBeMade) {
  EXPECT_EQ(
      outputOf("cd $(mktemp -d) && mkdir a b && echo x > a/f && mv a/f b/ && ln -s f b/l && mkfifo p && "
               "ln b/f h && cat b/l h && mv b a/ && ls a/b"),
      "x\nx\nf\nl\n");
  EXPECT_NE(mknod("/tmp/device-node", S_IFCHR | 0600, 0x103), 0);
}

TEST(Guard, NestedShellsShareOneFilter) {
  const char* count = "grep Seccomp_filters: /proc/self/status";
  const std::string here = outputOf(count);
  EXPECT_EQ(here, outputOf("sh -c '/bin/sh -c \"exec sh -c \\\"" + std::string(count) + "\\\"\"'"));
  // Descriptors pass between shells of a build, as make's job slots do.
  EXPECT_EQ(outputOf("exec 7<<< handed; sh -c 'cat <&7'"), "handed\n");
}

TEST(Guard, TheShellIsTheOneThatPhonesHave) {
  EXPECT_EQ(outputOf("echo -e 'a\\tb'"), "a\tb\n");
  EXPECT_EQ(outputOf("echo $0"), "sh\n");
  EXPECT_EQ(outputOf("umask; pwd"), "0022\n/\n");
  EXPECT_EQ(system("exit 42") >> 8, 42);
  EXPECT_EQ(system("kill -9 $$"), 9);
}

TEST(Guard, ProcessesAreLimitedAndLeaveNoDumps) {
  rlimit limit{};
  getrlimit(RLIMIT_NPROC, &limit);
  EXPECT_LE(limit.rlim_max, 4096U);
  getrlimit(RLIMIT_CORE, &limit);
  EXPECT_EQ(limit.rlim_max, 0U);
}

}  // namespace
