// What a command line can reach of the application that runs it: this program is started as the application
// is.
#include <cstdio>
#include <fcntl.h>
#include <linux/landlock.h>
#include <signal.h>
#include <stdlib.h>
#include <string>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

std::string outputOf(const std::string& command) {
  std::string text;
  FILE* pipe = popen(("{ " + command + "; } 2>&1").c_str(), "r");
  for (int character = fgetc(pipe); character != EOF; character = fgetc(pipe))
    text.push_back(static_cast<char>(character));
  pclose(pipe);
  return text;
}

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
  const int authority = memfd_create("authority", 0);
  ASSERT_EQ(write(authority, "cookie", 6), 6);
  const std::string path = "/proc/self/fd/" + std::to_string(authority);
  setenv("DISPLAY", ":0", 1);
  setenv("WAYLAND_DISPLAY", "/.host/wayland", 1);
  setenv("XAUTHORITY", path.c_str(), 1);
  setenv("AT_SPI_BUS_ADDRESS", "unix:path=/.host/accessibility", 1);
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/x", 1);
  setenv("TWEAKBENCH_REDUCED_MOTION", "1", 1);
  setenv("KEPT_FOR_COMMANDS", "yes", 1);
  const std::string home = getenv("HOME");
  setenv("HOME", "/.host/empty", 1);
  const std::string environment = outputOf("env");
  for (const char* name : {"DISPLAY", "XAUTHORITY", "AT_SPI", "DBUS_", "QT_", "TWEAKBENCH_"}) {
    EXPECT_EQ(environment.find(name), std::string::npos) << name;
  }
  EXPECT_NE(environment.find("KEPT_FOR_COMMANDS=yes"), std::string::npos);
  EXPECT_NE(environment.find("HOME=/var/mobile\n"), std::string::npos);
  setenv("HOME", "/var/tmp", 1);
  EXPECT_EQ(outputOf("echo $HOME"), "/var/tmp\n") << "a build's own choice";
  setenv("HOME", home.c_str(), 1);
  // The descriptor is open here and closed there.
  EXPECT_EQ(outputOf("cat /dev/fd/" + std::to_string(authority)).find("cookie"), std::string::npos);
  for (const char* name :
       {"DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY", "AT_SPI_BUS_ADDRESS", "DBUS_SESSION_BUS_ADDRESS"}) {
    unsetenv(name);
  }
  close(authority);
}

TEST(GuardBoundary, CommandsCannotOpenUpTheApplicationThroughProc) {
  if (landlockVersion() < 2) GTEST_SKIP() << "This kernel has no Landlock.";
  const int authority = memfd_create("authority", MFD_CLOEXEC);
  ASSERT_EQ(write(authority, "cookie", 6), 6);
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
