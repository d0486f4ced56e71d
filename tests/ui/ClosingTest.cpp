// Closing the window: while a build prints for ever, the process ends in order, and so does everything that
// it started.
#include "platform/EventLoop.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "support/Device.h"
#include "tour/Finger.h"
#include "ui/Localized.h"
#include "ui/screens/AppDelegate.h"
#include "workspace/CurrentProject.h"

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <sys/wait.h>
#include <unistd.h>

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

// Runs the application with a finger that does `steps`, which ends it where something is missing. In a
// process of its own, since it stops its commands for good. With success only if it has no child left.
[[noreturn]] void run(const std::function<void()>& steps, const std::function<bool()>& isAsItShould) {
  // A build that is not stopped would be waited for without end.
  alarm(60);
  char name[] = "closing_tests";
  char* arguments[] = {name, nullptr};
  const int status = UIApplicationMain(1, arguments, [&steps] {
    dispatch_async(dispatch_get_main_queue(), [&steps] {
      try {
        steps();
      } catch (const finger::Missing& missing) {
        std::cerr << missing.what() << '\n';
        std::_Exit(EXIT_FAILURE);
      }
    });
    return makeAppDelegate();
  });
  const bool isAlone = waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD;
  std::_Exit(status == 0 && isAlone && isAsItShould() ? EXIT_SUCCESS : EXIT_FAILURE);
}

TEST(Closing, ALanguageIsWrittenAndTheProcessEndsWithSuccess) {
  device::reset();
  const auto chooseArabic = [] {
    setMotionEnabled(false);
    finger::tap("Project Options");
    finger::tap(localized(text::changeLanguage));
    finger::tap(localized(text::arabic));
  };
  const auto comesBack = [] { return false; };
  EXPECT_EXIT(run(chooseArabic, comesBack), testing::ExitedWithCode(0), "");
  EXPECT_EQ(device::setting("LangFile", "Language"), "AR");
}

TEST(Closing, EndsARunningBuildAndTakesNoFurtherStep) {
  device::reset();
  putFile(device::projects + "P/Makefile", "package:\n\t@mkdir packages; while :; do echo printing; done\n");
  putFile(device::packages + "/P/kept.deb", "kept");
  putFile("/var/Tweakyard/tmp/SuccessfullyUpdated.log", "");
  chooseProject("P");
  const std::string log = device::application + "MakeLog.log";
  const auto closeDuringABuild = [&log] {
    endCommandsWithApplication();
    finger::tap("Build");
    finger::tap("Make Package");
    finger::waitUntil(
        [&log] {
          return fileExistsAtPath(device::projects + "P/packages") &&
                 fileAt(log).find("printing") != std::string::npos;
        },
        "make does not start");
    if (!UIScreen::mainScreen()->close()) std::_Exit(EXIT_FAILURE);
  };
  EXPECT_EXIT(run(closeDuringABuild, [] { return grace == 2000; }), testing::ExitedWithCode(0), "");
  const auto size = fileAt(log).size();
  EXPECT_EQ(fileAt(device::packages + "/P/kept.deb"), "kept") << "the step after the cut one must not run";
  EXPECT_TRUE(fileExistsAtPath(device::projects + "P/packages"));
  EXPECT_EQ(fileAt(log).size(), size) << "something still prints";
}

}  // namespace
