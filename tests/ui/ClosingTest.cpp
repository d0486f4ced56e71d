// Closing the window: while a build prints for ever, the process ends in order, and so does everything that
// it started.
#include "platform/EventLoop.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "support/Device.h"
#include "support/StandardStreams.h"
#include "tour/Finger.h"
#include "ui/Localized.h"
#include "ui/screens/AppDelegate.h"
#include "workspace/CurrentProject.h"

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

#include <QTest>
#include <gtest/gtest.h>

// Linked in the place of core's.
int grace = 0;
extern "C++" void realStop(int milliseconds) asm("__real__Z12stopCommandsi");
extern "C++" void stop(int milliseconds) asm("__wrap__Z12stopCommandsi");
void stop(int milliseconds) {
  grace = milliseconds;
  realStop(milliseconds);
}

namespace {

int applicationArguments = 1;
char applicationName[] = "closing_tests";
char* applicationVector[] = {applicationName, nullptr};

// Runs the application with a finger that does `steps`. Ends it too where something is missing.
int run(const std::function<void()>& steps) {
  return UIApplicationMain(applicationArguments, applicationVector, [&steps] {
    dispatch_async(dispatch_get_main_queue(), [&steps] {
      try {
        steps();
      } catch (const finger::Missing& missing) {
        ADD_FAILURE() << missing.what();
        QCoreApplication::exit(EXIT_FAILURE);
      }
    });
    return makeAppDelegate();
  });
}

// First, since the child must be made before this process has threads.
TEST(Closing, ALanguageIsWrittenAndTheProcessEndsWithSuccess) {
  device::reset();
  const pid_t child = fork();
  ASSERT_NE(child, -1);
  if (child == 0) {
    setMotionEnabled(false);
    run([] {
      finger::tap("Project Options");
      finger::tap(localized(text::changeLanguage));
      finger::tap(localized(text::arabic));
    });
    _exit(99);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  EXPECT_EQ(device::setting("LangFile", "Language"), "AR");
}

TEST(Closing, EndsARunningBuildAndTakesNoFurtherStep) {
  const StandardStreams restored;
  device::reset();
  // Where the build is not stopped, it would be waited for without end.
  alarm(60);
  putFile(device::projects + "P/Makefile", "package:\n\t@mkdir packages; while :; do echo printing; done\n");
  putFile(device::packages + "/P/kept.deb", "kept");
  putFile("/var/Tweakyard/tmp/SuccessfullyUpdated.log", "");
  chooseProject("P");
  bool closed = false;
  grace = 0;
  const int status = run([&closed] {
    endCommandsWithApplication();
    finger::tap("Build");
    finger::tap("Make Package");
    finger::waitUntil(
        [] {
          return fileExistsAtPath(device::projects + "P/packages") &&
                 fileAt(device::application + "MakeLog.log").find("printing") != std::string::npos;
        },
        "make does not start");
    closed = UIScreen::mainScreen()->close();
  });
  alarm(0);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(closed);
  EXPECT_EQ(grace, 2000);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD) << "a child is left";
  const std::string log = fileAt(device::application + "MakeLog.log");
  EXPECT_NE(log.find("printing"), std::string::npos);
  EXPECT_EQ(fileAt(device::packages + "/P/kept.deb"), "kept") << "the step after the cut one must not run";
  EXPECT_TRUE(fileExistsAtPath(device::projects + "P/packages"));
  EXPECT_EQ(fileAt(device::application + "MakeLog.log").size(), log.size()) << "something still prints";
}

}  // namespace
