// The application's start and screens among files that are not as they should be, and in a system that
// refuses what they ask for.
#include "support/FaultReport.h"
#include "tests/ui/Screens.h"
#include "workspace/CurrentProject.h"
#include "workspace/ProjectFiles.h"

#include <array>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QElapsedTimer>

namespace {

using finger::sees;
using finger::tap;
using finger::waitToSee;

namespace filesystem = std::filesystem;

// What the shell does to a whole file.
constexpr std::pair<const char*, const char*> damages[] = {
    {"missing", "rm %@"},
    {"empty", ": > %@"},
    {"truncated", "truncate -s $(($(stat -c %s %@) / 2)) %@"},
    {"not UTF-8", "printf 'caf\\351 \\377\\376' >> %@"},
    {"zeros", "head -c 5000 /dev/zero > %@"},
    {"a folder", "rm %@ && mkdir %@ && echo inside > %@/file"},
    {"a FIFO", "rm %@ && mkfifo %@"},
    {"unreadable", "chmod 0 %@"},
    {"a link to itself", "rm %@ && ln -s %@ %@"},
    {"endless", "ln -sf /dev/zero %@"},
};

std::vector<std::string> entriesOf(const std::string& path) {
  return contentsOfDirectoryAtPath(path).value_or(std::vector<std::string>());
}

const std::string folder = device::projects + "P/";
const std::string buildLog = device::application + "MakeLog.log";
const std::string shippedTemplate = device::application + "TheosOrig.zip";
const std::string patches = "/var/mobile/Library/Flex/patches.plist";

// Whether anybody opens a file.
class Opening {
 public:
  explicit Opening(const std::string& path) : events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    inotify_add_watch(events_.get(), path.c_str(), IN_OPEN);
  }
  bool happened() const {
    std::array<char, sizeof(inotify_event)> event;
    return read(events_.get(), event.data(), event.size()) > 0;
  }

 private:
  Descriptor events_;
};

class Damaged : public Screens {
 protected:
  // A project that was built, with every file that is ever read.
  void makeEverything() const {
    device::reset();
    recordTheosPath();
    device::speak("Auto");
    putFile(shippedTemplate, template_);
    putFile(patches,
            device::emptyList(
                "<key>patches</key><array><dict><key>name</key><string>one</string></dict></array>"));
    putFile(folder + "Makefile", "package:\n\t@mkdir packages\n");
    for (const char* file : {"Tweak.x", "control", "P.plist"}) putFile(folder + file, "whole\n");
    putFile(updateMarker, "updated");
    chooseProject("P");
    SS("Tweak.x");
  }

  void lookAround() {
    start();
    tap("Choose Project");
    waitToSee(localized(text::loadProject));
    tap(localized(text::cancel));
    tap("Project Options");
    waitToSee(localized(text::extraOptions));
    tap(localized(text::cancel));
    waitToSee("Reload");
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

  // What the dialog that `entry` leads to is answered with.
  static void answer(void (*menu)(const TextPair&), const TextPair& entry, const QString& text,
                     const QString& button) {
    menu(entry);
    finger::type(text);
    tap(button);
    waitToSee("Reload");
  }
  static void create() { answer(projectMenu, text::createNewProject, "New", localized(text::confirm)); }
  static void rename() { answer(optionsMenu, text::changeProjectName, "Renamed", "Change"); }
  static void readTweak() {
    if (sees("Tweak.x")) lookAtTweak();
    answer(projectMenu, text::createHeaderFile, "H", localized(text::confirm));
  }
  static void listFiles() {
    projectMenu(text::changeFileName);
    waitToSee(localized(text::whichOne));
    tap(localized(text::cancel));
  }
  static void import() {
    projectMenu(text::addFlexPatch);
    finger::waitUntil([] { return topDialog() || sees("Reload"); }, "no menu and no main screen");
    if (topDialog()) tap(localized(text::cancel));
  }

  const std::string template_ = fileAt(shippedTemplate);
};

TEST_F(Damaged, EveryFileThatIsReadMayBeInAnyState) {
  constexpr int patience = 20'000;  // milliseconds for one look around, a hundred times what it takes
  struct {
    std::string path;
    // What of the main screen reads it; none where every look around does.
    void (*use)() = [] {};
  } const files[] = {
      {device::application + "Choose.plist"},
      {device::application + "Files.plist", listFiles},
      {device::application + "LangFile.plist"},
      {device::application + "Checker.plist", lookAtTweak},
      {device::preferences},
      {shippedTemplate, create},
      {folder + "Makefile", rename},
      {folder + "control", rename},
      {folder + "Tweak.x", readTweak},
      {patches, import},
  };
  int tries = 0;
  int met = 0;
  for (const auto& [file, use] : files) {
    makeEverything();
    const Opening opening(file);
    lookAround();
    use();
    delegate_.reset();
    const bool isRead = opening.happened();
    EXPECT_TRUE(isRead) << file;
    for (const auto& [name, command] : damages) {
      SCOPED_TRACE(file + " is " + name);
      makeEverything();
      run_cmd(command, {file, file, file});
      QElapsedTimer timer;
      timer.start();
      ASSERT_NO_THROW({
        lookAround();
        use();
      });
      EXPECT_LT(timer.elapsed(), patience);
      ++tries;
      if (isRead) ++met;
      // Nothing but a setting was to be changed, and of the settings only those that can be read.
      if (file == device::preferences || file == patches) {
        EXPECT_EQ(currentProject(), "P");
      }
      delegate_.reset();
      chmod(file.c_str(), 0755);
      removeItemAtPath(file);
      if (HasFailure()) return;
    }
  }
  // Made anew by each build, so it comes to harm while make runs.
  for (const auto& [name, command] : damages) {
    SCOPED_TRACE(std::string("the log is ") + name);
    makeEverything();
    putFile(folder + "Makefile",
            "package:\n\t@touch /var/tmp/built; while test -e /var/tmp/built; do :; done; mkdir packages\n");
    start();
    openBuildScreen();
    tap("Show success alert");
    tap("Make Package");
    finger::waitUntil([] { return fileExistsAtPath("/var/tmp/built"); }, "make does not start");
    run_cmd(command, {buildLog, buildLog, buildLog});
    removeItemAtPath("/var/tmp/built");
    ASSERT_NO_THROW(
        finger::waitUntil([] { return !sees(localized(text::pleaseWait)); }, "no end of the build"));
    EXPECT_TRUE(fileExistsAtPath(device::packages + "/P"));
    delegate_.reset();
    ++tries;
    // Its cleaning looks at it in every state.
    ++met;
    removeItemAtPath(buildLog);
  }
  reportFault("each file that is read, in ten bad states", tries, std::to_string(met), "no look around hung");
}

TEST_F(Damaged, AnApplicationFolderThatCannotBeWrittenChangesNothing) {
  makeEverything();
  putFile(device::projects + "Q/of-Q", "");
  std::vector<std::pair<std::string, std::string>> before;
  for (const std::string& entry : entriesOf(device::application))
    before.emplace_back(entry, fileAt(device::application + entry));
  // What an earlier pick left where it could not be deleted.
  putFile(device::application + "Checkers.log", "Noooop\n");
  chmod(device::application.c_str(), 0555);
  ASSERT_FALSE(writeToFileAtomically(device::application + "Choose.plist", ""))
      << "the folder can be written";
  ASSERT_NO_THROW({
    lookAround();
    openEditor("Tweak.x");
    EXPECT_FALSE(sees("Not supported yet"));
    leaveEditor("Cancel");
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
  reportFault("the application folder read-only", 1, "1",
              "a file was edited, a project built, " + std::to_string(before.size()) + " files as before");
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
  ASSERT_FALSE(fileExistsAtPath(device::application));
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
  reportFault("all removed under the running screens", 1, "1", "every menu and a build went on");
}

TEST_F(Damaged, TheScreensGoOnWhereNeitherProcessNorThreadCanBeStarted) {
  makeEverything();
  start();
  rlimit usual{};
  getrlimit(RLIMIT_NPROC, &usual);
  const rlimit none{0, usual.rlim_max};
  setrlimit(RLIMIT_NPROC, &none);
  const pid_t child = fork();
  if (child == 0) _exit(0);
  ASSERT_EQ(child, -1) << "processes can be started";
  ASSERT_NO_THROW({
    tap("Project Options");
    waitToSee(localized(text::extraOptions));
    tap(localized(text::cancel));
    openBuildScreen();
    build("Make Package");
  });
  EXPECT_FALSE(fileExistsAtPath(device::packages + "/P"));
  setrlimit(RLIMIT_NPROC, &usual);
  ASSERT_NO_THROW(build("Make Package"));
  EXPECT_TRUE(fileExistsAtPath(device::packages + "/P"));
  reportFault("no process and no thread for the screens", 1, "1", "painted on, and built once there were");
}

}  // namespace
