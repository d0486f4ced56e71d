// Closing the window: what has been typed is not lost without a word; and while a build prints for ever, the
// process ends in order, and so does everything that it started.
#include "platform/EventLoop.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "support/Device.h"
#include "support/StandardStreams.h"
#include "tour/Finger.h"
#include "ui/Localized.h"
#include "ui/controls/TextView.h"
#include "ui/screens/AppDelegate.h"
#include "workspace/CurrentProject.h"

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

#include <QTest>
#include <gtest/gtest.h>

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

TEST(Closing, AsksBeforeUnsavedTextIsLost) {
  const StandardStreams restored;
  device::reset();
  const std::string file = device::projects + "P/Tweak.x";
  putFile(file, "old");
  chooseProject("P");
  const QString save = localized(text::save);
  const QString cancel = localized(text::cancel);
  const auto closes = [] { return UIScreen::mainScreen()->close(); };
  const int status = run([&] {
    finger::tap("Tweak.x");
    auto& editor = *qobject_cast<TextView*>(finger::find("File text"));
    finger::waitUntil([&editor] { return editor.bytes() == "old"; }, "the file is not loaded");
    QTest::keyClicks(&editor, "new, ");
    EXPECT_FALSE(closes());
    EXPECT_FALSE(closes()) << "it asks already";
    finger::waitUntil([] { return !finger::sees("File text"); }, "it does not ask");
    finger::tap(cancel);
    finger::waitToSee("File text");
    EXPECT_EQ(editor.bytes(), "new, old");
    EXPECT_EQ(fileAt(file), "old");
    // Esc asks the same, and leaves only the editor.
    QTest::keyClick(&editor, Qt::Key_Escape);
    finger::waitToSee("Your changes to Tweak.x are not saved. Without saving they are lost.");
    finger::tap(localized(text::discard));
    finger::waitToSee("Files");
    EXPECT_EQ(fileAt(file), "old");
    finger::tap("Tweak.x");
    auto& again = *qobject_cast<TextView*>(finger::find("File text"));
    finger::waitUntil([&again] { return again.bytes() == "old"; }, "the file is not loaded again");
    // The caret is where the discarded text had it.
    again.setCursorPosition(0, 0);
    QTest::keyClicks(&again, "new, ");
    // A folder in the file's place: it cannot be written, so the text stays where it is.
    removeItemAtPath(file);
    putFile(file + "/x", "");
    EXPECT_FALSE(closes());
    finger::waitUntil([] { return !finger::sees("File text"); }, "it does not ask again");
    finger::tap(save);
    finger::tap(localized(text::ok));
    finger::waitToSee("File text");
    removeItemAtPath(file);
    EXPECT_FALSE(closes());
    finger::waitUntil([] { return !finger::sees("File text"); }, "it does not ask a third time");
    finger::tap(save);
  });
  EXPECT_EQ(status, 0);
  EXPECT_EQ(fileAt(file), "new, old");
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
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD) << "a child is left";
  const std::string log = fileAt(device::application + "MakeLog.log");
  EXPECT_NE(log.find("printing"), std::string::npos);
  EXPECT_EQ(fileAt(device::packages + "/P/kept.deb"), "kept") << "the step after the cut one must not run";
  EXPECT_TRUE(fileExistsAtPath(device::projects + "P/packages"));
  EXPECT_EQ(fileAt(device::application + "MakeLog.log").size(), log.size()) << "something still prints";
}

}  // namespace
