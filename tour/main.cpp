// The guided tour: tour [WIDTHxHEIGHT] [main-job]. Does the main job from an empty device to a built package
// on the real screens with real clicks and keys, then (unless only the main job is asked for) opens every
// screen and dialog, in each language, and takes pictures. Needs a device without projects and backups, and
// prints the paths of the pictures and of the package there. The size is in logical pixels.
#include "core/FileManager.h"
#include "core/Text.h"
#include "platform/EventLoop.h"
#include "platform/UIApplication.h"
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

// Changes the setting directly, since the menu would end the process, and refreshes the screen by opening the
// list of backups.
void turnToArabic() {
  setLanguage(Language::Arabic);
  finger::tap("Project Options");
  finger::tap(localized(text::restore));
  finger::tap(localized(text::cancel));
  finger::waitUntil([] { return QGuiApplication::isRightToLeft(); }, "the screens do not turn round");
}

void goEverywhere(Album& album) {
  stops::mainJob(album);
  stops::mainJobInDetail(album);
  stops::menus(album);
  stops::options(album);
  stops::otherScreens(album);
  stops::end(album);
}

void goTour(FILE* report, bool onlyMainJob) {
  // The tour ends by deleting all projects and backups.
  if (!projectNames().empty() || !backupNames().empty())
    throw std::runtime_error("there are projects or backups in this device, and it would delete them");
  Album album(report);
  if (onlyMainJob) {
    stops::mainJob(album);
    return;
  }
  goEverywhere(album);
  turnToArabic();
  album.setEnding("-arabic");
  goEverywhere(album);
}

void sizeScreen(const char* size) {
  int width = 0;
  int height = 0;
  if (std::sscanf(size, "%dx%d", &width, &height) == 2) UIScreen::mainScreen()->resize(width, height);
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
    // No picture of a dialog in motion.
    setMotionEnabled(false);
    endCommandsWithApplication();
    if (argc > 1) sizeScreen(argv[1]);
    const bool onlyMainJob = argc > 1 && argv[argc - 1] == std::string("main-job");
    dispatch_async(dispatch_get_main_queue(), [&, onlyMainJob] {
      try {
        goTour(report, onlyMainJob);
        if (reportPackage(report)) status = EXIT_SUCCESS;
      } catch (const std::exception& error) {
        std::fprintf(report, "The tour stopped: %s\n", error.what());
      }
      // Not by closing the window, which asks about unsaved text.
      QCoreApplication::exit(status);
    });
    return makeAppDelegate();
  });
  std::fclose(report);
  return status;
}
