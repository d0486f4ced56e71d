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
  const std::string home = getenv("HOME");
  for (const char* name :
       {"DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY", "AT_SPI_BUS_ADDRESS", "QT_SCALE_FACTOR",
        "DBUS_SESSION_BUS_ADDRESS", "XCURSOR_SIZE", "XDG_DATA_DIRS", "TWEAKBENCH_REDUCED_MOTION"}) {
    setenv(name, "of the interface", 1);
    EXPECT_EQ(outputOf("env").find("of the interface"), std::string::npos) << name;
    unsetenv(name);
  }
  setenv("KEPT_FOR_COMMANDS", "yes", 1);
  setenv("HOME", "/.host/empty", 1);
  EXPECT_EQ(outputOf("echo $KEPT_FOR_COMMANDS $HOME"), "yes /var/mobile\n");
  setenv("HOME", "/var/tmp", 1);
  EXPECT_EQ(outputOf("echo $HOME"), "/var/tmp\n") << "a build's own choice";
  setenv("HOME", home.c_str(), 1);
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
