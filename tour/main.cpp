// The guided tour: the main job from an empty device to a built package, and all that lies beside the way,
// done on the real screens with real clicks and keys, in each language, with a picture of every screen and
// dialog. Runs in a device without projects and backups and prints, at its end, the paths of the package and
// of the pictures there. Its one argument, WIDTHxHEIGHT in logical pixels, is the screen's size.
#include "core/FileManager.h"
#include "core/Text.h"
#include "platform/EventLoop.h"
#include "platform/UIApplication.h"
#include "platform/UIDevice.h"
#include "platform/UIScreen.h"
#include "tour/Finger.h"
#include "tour/Tour.h"
#include "ui/Localized.h"
#include "ui/screens/AppDelegate.h"
#include "workspace/CurrentProject.h"
#include "workspace/ProjectFiles.h"
#include "workspace/Projects.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
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

// The tour ends with the dialogs that delete projects and backups, all of them.
void requireNothingToLose() {
  if (!projectNames().empty() || !backupNames().empty())
    throw std::runtime_error("there are projects or backups in this device, and it would delete them");
}

void goTour(FILE* report) {
  requireNothingToLose();
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
      // Not by closing the window, which asks where text is not saved.
      QCoreApplication::exit(status);
    });
    return makeAppDelegate();
  });
  std::fclose(report);
  return status;
}
