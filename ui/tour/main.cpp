// The guided tour: the main job from an empty device to a built package, and all that lies beside the way,
// done on the real screens with real clicks and keys, in each language, with a picture of every screen and
// dialog. Runs in the device and prints, at its end, the paths of the package and of the pictures there. Its
// one argument, WIDTHxHEIGHT in logical pixels, is the screen's size.
#include "core/FileManager.h"
#include "core/Text.h"
#include "platform/Motion.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "platform/dispatch.h"
#include "ui/AppDelegate.h"
#include "ui/EndOfProcess.h"
#include "ui/Localized.h"
#include "ui/tour/Album.h"
#include "ui/tour/Finger.h"
#include "ui/tour/Stops.h"
#include "workspace/ProjectName.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <unistd.h>

namespace {

const std::string packageFolder = std::string("/var/mobile/Documents/Tweakbench/") + stops::project;

// The menu would end the process for the next one to speak the language. Instead the screen is brought up to
// date, as it is when somebody has looked at the backups.
void turnToArabic() {
  setLanguage(Language::Arabic);
  finger::tap("Project Options");
  finger::tap(localized(text::restore));
  finger::tap(localized(text::cancel));
  finger::waitUntil([] { return QGuiApplication::isRightToLeft(); }, "the screens do not turn round");
}

void goEverywhere(Album& album) {
  stops::mainJob(album);
  stops::menus(album);
  stops::options(album);
  stops::otherScreens(album);
  stops::end(album);
}

void goTour(FILE* report) {
  Album album(report);
  goEverywhere(album);
  turnToArabic();
  album.setEnding("-arabic");
  goEverywhere(album);
}

void sizeScreen(int argc, char** argv) {
  int width = 0;
  int height = 0;
  if (argc > 1 && std::sscanf(argv[1], "%dx%d", &width, &height) == 2)
    UIScreen::mainScreen()->resize(width, height);
}

bool reportPackage(FILE* report) {
  for (const std::string& name :
       contentsOfDirectoryAtPath(packageFolder).value_or(std::vector<std::string>{})) {
    if (pathExtension(name) != "deb") continue;
    std::fprintf(report, "package %s/%s\n", packageFolder.c_str(), name.c_str());
    return true;
  }
  std::fprintf(report, "There is no package in %s\n", packageFolder.c_str());
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  FILE* const report = fdopen(dup(STDOUT_FILENO), "w");
  int status = EXIT_FAILURE;
  UIApplicationMain(argc, argv, [&] {
    // A picture must not catch a dialog half way.
    setMotionEnabled(false);
    endCommandsWithApplication();
    sizeScreen(argc, argv);
    dispatch_async(dispatch_get_main_queue(), [&] {
      try {
        goTour(report);
        if (reportPackage(report)) status = EXIT_SUCCESS;
      } catch (const std::exception& error) {
        std::fprintf(report, "The tour stopped: %s\n", error.what());
      }
      QCoreApplication::quit();
    });
    return makeAppDelegate();
  });
  std::fclose(report);
  return status;
}
