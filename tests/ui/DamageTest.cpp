// The application's start and screens among files that are not as they should be, and in a system that
// refuses what they ask for.
#include "tests/ui/Screens.h"
#include "workspace/CurrentProject.h"

#include <array>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QElapsedTimer>

namespace {

using finger::sees;
using finger::tap;
using finger::waitToSee;

namespace filesystem = std::filesystem;

struct Damage {
  const char* name;
  // What lies at the path is whole when this is called.
  void (*inflict)(const std::string& path);
};

const std::array<Damage, 10> damages{{
    {"missing", [](const std::string& path) { removeItemAtPath(path); }},
    {"empty", [](const std::string& path) { putFile(path, ""); }},
    {"truncated",
     [](const std::string& path) {
       const std::string whole = fileAt(path);
       putFile(path, whole.substr(0, whole.size() / 2));
     }},
    {"not UTF-8", [](const std::string& path) { putFile(path, fileAt(path) + "caf\xE9 \xFF\xFE"); }},
    {"zeros", [](const std::string& path) { putFile(path, std::string(5000, '\0')); }},
    {"a folder",
     [](const std::string& path) {
       removeItemAtPath(path);
       putFile(path + "/file", "inside");
     }},
    {"a FIFO",
     [](const std::string& path) {
       removeItemAtPath(path);
       mkfifo(path.c_str(), 0666);
     }},
    {"unreadable", [](const std::string& path) { chmod(path.c_str(), 0); }},
    {"a link to itself",
     [](const std::string& path) {
       removeItemAtPath(path);
       filesystem::create_symlink(path, path);
     }},
    {"endless",
     [](const std::string& path) {
       removeItemAtPath(path);
       filesystem::create_symlink("/dev/zero", path);
     }},
}};

std::vector<std::string> entriesOf(const std::string& path) {
  return contentsOfDirectoryAtPath(path).value_or(std::vector<std::string>());
}

const std::string folder = device::projects + "P/";

class Damaged : public Screens {
 protected:
  // A project that was built, with every file that is ever read.
  static void makeEverything() {
    device::reset();
    recordTheosPath();
    for (const char* file : {"Tweak.x", "Makefile", "control", "P.plist"}) putFile(folder + file, "whole\n");
    for (const char* log : {"MakeLog.log", "Getter.log", "titleANDObj.log", "Checkers.log"})
      putFile(device::application + log, "1\n2\n3) a\n4\n5\n6\n");
    putFile(updateMarker, "updated");
    chooseProject("P");
    SS("Tweak.x");
  }

  // Looks at every screen and reads every file that the application reads itself.
  void lookAround() {
    start();
    tap("Choose Project");
    waitToSee(localized(text::loadProject));
    tap(localized(text::cancel));
    tap("Project Options");
    waitToSee(localized(text::extraOptions));
    tap(localized(text::cancel));
    waitToSee("Reload");
    if (sees("Tweak.x")) lookAtTweak();
    openBuildScreen();
    tap("Clear Log");
    tap("Back");
    waitToSee("Reload");
  }

  static void lookAtTweak() {
    tap("Tweak.x");
    finger::waitUntil([] { return sees("Save") || sees("Not supported yet"); }, "no editor and no refusal");
    // A refusal comes over the editor, which goes with it.
    if (sees("Not supported yet")) {
      tap("OK");
    } else {
      leaveEditor("Cancel");
    }
    waitToSee("Reload");
  }
};

TEST_F(Damaged, EveryFileThatIsReadMayBeInAnyState) {
  constexpr int patience = 20'000;  // milliseconds for one look around, a hundred times what it takes
  const std::vector<std::string> files{
      device::application + "Choose.plist",
      device::application + "Files.plist",
      device::application + "LangFile.plist",
      device::application + "Checker.plist",
      device::application + "MakeLog.log",
      device::application + "Getter.log",
      device::application + "Checkers.log",
      device::application + "TheosOrig.zip",
      device::preferences,
      updateMarker,
      folder + "Makefile",
      folder + "control",
      folder + "P.plist",
      folder + "Tweak.x",
  };
  const std::string shippedTemplate = fileAt(device::application + "TheosOrig.zip");
  for (const std::string& file : files) {
    for (const Damage& damage : damages) {
      SCOPED_TRACE(file + " is " + damage.name);
      makeEverything();
      damage.inflict(file);
      QElapsedTimer timer;
      timer.start();
      ASSERT_NO_THROW(lookAround());
      EXPECT_LT(timer.elapsed(), patience);
      delegate_.reset();
      if (HasFailure()) return;
      // Nothing but a setting was to be changed, and of the settings only those that can be read.
      if (file != device::application + "Choose.plist" && file != device::application + "Files.plist") {
        EXPECT_EQ(currentProject(), "P");
      }
      chmod(file.c_str(), 0755);
      removeItemAtPath(file);
    }
    putFile(device::application + "TheosOrig.zip", shippedTemplate);
  }
}

TEST_F(Damaged, AnApplicationFolderThatCannotBeWrittenChangesNothing) {
  makeEverything();
  putFile(device::projects + "Q/of-Q", "");
  std::vector<std::pair<std::string, std::string>> before;
  for (const std::string& entry : entriesOf(device::application))
    before.emplace_back(entry, fileAt(device::application + entry));
  chmod(device::application.c_str(), 0555);
  EXPECT_FALSE(writeToFileAtomically(device::application + "Choose.plist", ""))
      << "the folder can be written";
  ASSERT_NO_THROW({
    lookAround();
    tap("Choose Project");
    tap("Q");
    waitToSee("Reload");
    openBuildScreen();
    build("Make Package");
  });
  chmod(device::application.c_str(), 0755);
  for (const auto& [entry, contents] : before) {
    // The logs of what went on all the same are written in place.
    if (entry == "MakeLog.log" || entry == "Checkers.log") continue;
    EXPECT_EQ(fileAt(device::application + entry), contents) << entry;
  }
}

TEST_F(Damaged, AllThatLiesInTheDeviceMayGoUnderTheRunningApplication) {
  makeEverything();
  const std::string kept = "/var/mobile/kept-application";
  removeItemAtPath(kept);
  filesystem::copy(device::application, kept, filesystem::copy_options::recursive);
  start();
  for (const char* place : {"/Applications", "/var"}) {
    for (const std::string& entry : entriesOf(place)) {
      if (entry == "mobile") continue;
      removeItemAtPath(std::string(place) + "/" + entry);
    }
  }
  EXPECT_FALSE(fileExistsAtPath(device::application));
  ASSERT_NO_THROW({
    lookAtTweak();
    tap("Reload");
    tap("Choose Project");
    tap(localized(text::cancel));
    projectMenu(text::createNewProject);
    finger::type("New");
    tap(localized(text::confirm));
    waitToSee("Reload");
    openBuildScreen();
    build("Make Package");
    build("Make Package");
  });
  delegate_.reset();
  filesystem::create_directories("/Applications");
  filesystem::copy(kept, device::application, filesystem::copy_options::recursive);
  filesystem::create_directories("/var/tmp");
  removeItemAtPath(kept);
  EXPECT_EQ(theosPath(), "/opt/theos");
}

TEST_F(Damaged, ABuildIsMadeWhereNoThreadCanBeStarted) {
  makeEverything();
  putFile(folder + "Makefile", "package:\n\t@mkdir packages\n");
  start();
  openBuildScreen();
  rlimit usual{};
  getrlimit(RLIMIT_NPROC, &usual);
  const rlimit none{0, usual.rlim_max};
  setrlimit(RLIMIT_NPROC, &none);
  const pid_t child = fork();
  if (child == 0) _exit(0);
  EXPECT_EQ(child, -1) << "processes can be started";
  // For the tap alone: Qt's painting waits for ever for threads that it does not get.
  tap("Make Package");
  setrlimit(RLIMIT_NPROC, &usual);
  finger::waitUntil([] { return !sees(localized(text::pleaseWait)); }, "the build does not end");
  EXPECT_TRUE(fileExistsAtPath(device::packages + "/P"));
}

}  // namespace
