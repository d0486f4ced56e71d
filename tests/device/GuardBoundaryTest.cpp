// What a command line can reach of the application that runs it: this program is started as the application
// is.
#include "support/Shell.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

long landlockVersion() {
  return syscall(SYS_landlock_create_ruleset, nullptr, 0UL, LANDLOCK_CREATE_RULESET_VERSION);
}

TEST(GuardBoundary, TheApplicationHasNoFilterAndItsCommandsHave) {
  const int local = socket(AF_UNIX, SOCK_STREAM, 0);
  EXPECT_GE(local, 0);
  close(local);
  EXPECT_NE(outputOf("grep Seccomp: /proc/self/status").find("2"), std::string::npos);
}

TEST(GuardBoundary, CommandsDoNotInheritTheInterface) {
  EXPECT_EQ(
      outputOf(
          "export KEPT=yes HOME=/.host/empty DISPLAY=: WAYLAND_DISPLAY=: XAUTHORITY=: AT_SPI_BUS_ADDRESS=: "
          "QT_SCALE_FACTOR=: DBUS_SESSION_BUS_ADDRESS=: XCURSOR_SIZE=: XDG_DATA_DIRS=: "
          "TWEAKBENCH_REDUCED_MOTION=:; /bin/sh -c 'env | grep :$; echo $KEPT $HOME; HOME=/var/tmp sh -c "
          "\"echo \\$HOME\"'"),
      "yes /var/mobile\n/var/tmp\n");
}

TEST(GuardBoundary, CommandsCannotOpenUpTheApplicationThroughProc) {
  const int authority = memfd_create("authority", 0);
  ASSERT_EQ(write(authority, "cookie", 6), 6);
  // The descriptor is open here and closed there.
  EXPECT_EQ(outputOf("cat /dev/fd/" + std::to_string(authority)).find("cookie"), std::string::npos);
  if (landlockVersion() < 2) GTEST_SKIP() << "This kernel has no Landlock.";
  const std::string self = "/proc/" + std::to_string(getpid());
  for (const std::string& file :
       {self + "/environ", self + "/fd/" + std::to_string(authority), self + "/mem"}) {
    EXPECT_NE(outputOf("cat " + file).find("Permission denied"), std::string::npos) << file;
  }
  // The same way into a process of the build's own is open.
  EXPECT_EQ(outputOf("cat /proc/$$/environ > /dev/null && echo open"), "open\n");
  close(authority);
}

TEST(GuardBoundary, CommandsCannotSignalTheApplication) {
  if (landlockVersion() < 6) GTEST_SKIP() << "This kernel cannot keep signals apart.";
  EXPECT_NE(outputOf("kill -9 " + std::to_string(getpid())).find("not permitted"), std::string::npos);
  EXPECT_EQ(outputOf("sleep 60 & kill -9 $! && echo sent"), "sent\n");
}

}  // namespace
