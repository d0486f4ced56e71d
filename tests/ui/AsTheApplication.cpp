// Stands in the application's place when the launcher opens it: the same screens, and a finger on them that
// does what /var/tmp/step in the device says.
#include "core/History.h"
#include "platform/EventLoop.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "support/Operations.h"
#include "tour/Finger.h"
#include "ui/Localized.h"
#include "ui/screens/AppDelegate.h"

#include <cstdlib>
#include <tuple>

#include <QPlainTextEdit>

namespace {

constexpr const char* result = "/var/tmp/result";

struct WindowIsClosed {};

void tapOption(const TextPair& option) {
  finger::tap("Project Options");
  finger::tap(localized(option));
}

// What the dialog for an address that nothing opens shows.
std::string addressShown() {
  return qobject_cast<QPlainTextEdit*>(finger::find("Address"))->toPlainText().toStdString();
}

// A project with one file, whose content tells both, is chosen.
void putProject(const std::string& name, const std::string& file) {
  putFile("/var/Tweakyard/Projects/" + name + "/" + file, "all of " + name + "\n");
  chooseProject(name);
}

// Loses something of each project in the way that it is named after; a moment later all of them are gone.
void destroy() {
  const std::string projects = "/var/Tweakyard/Projects/", documents = "/var/mobile/Documents/";
  putFile(projects + "FileRenamed/other", "other");
  putFile(documents + "TweakbenchBackups/Restored/file", "older");
  const std::tuple<const char*, const char*, const char*> ways[] = {
      {"Deleted", "file", "delete listed"},
      {"FileDeleted", "file", "delete file file"},
      {"CreatedOver", "control", "create CreatedOver"},
      {"FileRenamed", "file", "rename file other -> file"},
      {"Renamed", "file", "rename FileRenamed"},
      {"Header", "known.h", "header known"},
      {"Restored", "file", "restore Restored"}};
  for (const auto& [name, file, way] : ways) {
    putProject(name, file);
    perform(way);
  }
  putFile(projects + "Saved/file", "\xff, so no text to edit\nall of Saved\n");
  chooseProject("Saved");
  for (const char* control : {"Reload", "file", "Save"}) finger::tap(control);
  putProject("All", "file");
  backUpProject();
  putFile(documents + "Tweakbench/All/file", "all of All\n");
  deletePackages();
  deleteAllBackups();
  deleteAllProjects();
}

// Makes one backup after the other; all files of each have the same content.
[[noreturn]] void backUpForEver() {
  chooseProject("C#");
  for (int number = 1;; ++number) {
    for (int file = 0; file < 200; ++file)
      putFile("/var/Tweakyard/Projects/C#/" + std::to_string(file), std::to_string(number));
    backUpProject();
    putFile(result, std::to_string(number));
  }
}

void take(const std::string& step) {
  if (step == "open") {
    tapOption(text::openInFilza);
    openAddress(links::addPackageSource);
    // Refused, and so nothing is shown.
    openAddress("file:///etc/passwd");
    run_cmd("ls -l /proc/self/fd > /var/tmp/descriptors");
    putFile(result, "asked");
    // The last of them is answered when the others are.
    openAddress("https://example.com/last");
    finger::waitUntil([] { return fileAt("/var/tmp/done") == "yes\n"; }, "nobody says that it is done");
  } else if (step == "unavailable") {
    openAddress(links::addPackageSource);
    putFile(result, addressShown());
  } else if (step == "language") {
    putFile("/var/tmp/step", "read");
    UIScreen::mainScreen()->resize(500, 700);
    tapOption(text::changeLanguage);
    finger::tap(QString::fromUtf8(text::autoLanguage));
  } else if (step == "read") {
    finger::tap("Project Options");
    finger::waitToSee(QString::fromUtf8(text::extraOptions.arabic));
    putFile(result, "Arabic " + std::to_string(UIScreen::mainScreen()->width()));
  } else if (step == "minimize") {
    UIScreen::mainScreen()->showMinimized();
    putFile(result, "minimized");
    finger::waitUntil([] { return !UIScreen::mainScreen()->isMinimized(); }, "nobody brings it forward");
  } else if (step == "destroy") {
    destroy();
  } else if (step == "backup") {
    backUpForEver();
  } else if (step == "build") {
    // Until somebody ends it, or wants the window to be closed.
    finger::tap("Build");
    finger::tap("Make Package");
    finger::waitUntil([] { return fileExistsAtPath("/var/tmp/close"); }, "nobody ends the build");
    UIScreen::mainScreen()->close();
    throw WindowIsClosed();
  }
}

}  // namespace

int main(int argc, char** argv) {
  return UIApplicationMain(argc, argv, [] {
    setMotionEnabled(false);
    endCommandsWithApplication();
    openAddressesOnHost();
    connectHistory();
    followLauncher();
    createProjectsFolder();
    recordTheosPath();
    putFile("/var/Tweakyard/Projects/P/Tweak.x", "");
    chooseProject("P");
    dispatch_async(dispatch_get_main_queue(), [] {
      try {
        take(fileAt("/var/tmp/step"));
      } catch (const WindowIsClosed&) {
        return;
      } catch (const std::exception& error) {
        putFile(result, error.what());
      }
      std::_Exit(7);
    });
    return makeAppDelegate();
  });
}
