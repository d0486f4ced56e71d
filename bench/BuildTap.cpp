// A tap on Make Package, until the dialog that tells of its success is to be shown, against the same command
// lines in a shell. Runs in a device with a real Theos, from script/bench; exit status 0 when the ratio
// holds.
#include "bench/SideBySide.h"
#include "core/Languages.h"
#include "core/run_cmd.h"
#include "platform/NSNotificationCenter.h"
#include "platform/UIApplication.h"
#include "tour/Finger.h"
#include "ui/Localized.h"
#include "ui/screens/AppDelegate.h"
#include "workspace/CurrentProject.h"
#include "workspace/Paths.h"
#include "workspace/Projects.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <unistd.h>

#include <QTimer>

namespace {

using std::chrono::duration;
using std::chrono::steady_clock;

bool measure() {
  const std::string project = fill(paths::project, {"Tap"});
  const std::string packages = fill(paths::projectPackages, {"Tap"});
  // Each build compiles the one source anew.
  const auto edit = [&] { run_cmd("touch %@/Tweak.x", {project}); };
  finger::tap("Build");
  steady_clock::time_point lastShown;
  QObject observer;
  NSNotificationCenter::defaultCenter().addObserver(
      &observer, "RQAlertViewWillShowNotification", nullptr,
      [&lastShown](const NSNotification&) { lastShown = steady_clock::now(); });
  const int shown = dup(STDOUT_FILENO);
  return compare(
      {"a build tap, real Theos", "its command lines", 1.05, 9}, "s",
      [&] {
        edit();
        const auto start = steady_clock::now();
        finger::tap("Make Package");
        finger::waitToSee(localized(text::goToDebFolder));
        const duration<double> taken = lastShown - start;
        finger::tap(localized(text::cancel));
        // Waits until the screen takes taps again.
        finger::tap("Clear Log");
        return taken.count();
      },
      [&] {
        // A build takes the streams for its log.
        dup2(shown, STDOUT_FILENO);
        edit();
        return seconds([&] {
          run_cmd("(cd %@ && make package) > /tmp/make.log 2>&1", {project});
          run_cmd("cd %@ && rm -rf %@ && mv packages %@", {project, packages, packages});
        });
      });
}

}  // namespace

int main(int argc, char** argv) {
  installConverter();
  recordTheosPath();
  createProjectsFolder();
  createProject("Tap");
  // As after Theos has updated itself, which the first tap would do instead of a build.
  run_cmd("mkdir -p %@ && touch %@", {paths::updateFolder, paths::updateLog});
  return UIApplicationMain(argc, argv, [] {
    auto delegate = makeAppDelegate();
    QTimer::singleShot(0, [] {
      bool holds = false;
      try {
        holds = measure();
      } catch (const std::exception& error) {
        std::printf("stopped: %s\n", error.what());
      }
      std::fflush(stdout);
      std::_Exit(holds ? EXIT_SUCCESS : EXIT_FAILURE);
    });
    return delegate;
  });
}
