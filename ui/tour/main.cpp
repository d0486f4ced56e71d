// The guided tour: the main job from an empty device to a built package, done on the real screens with real
// clicks and keys, with a picture of each screen and dialog on the way. Runs in the device and prints, at its
// end, the paths of the package and of the pictures there. Its one argument, WIDTHxHEIGHT in logical pixels,
// is the screen's size.
#include "core/FileManager.h"
#include "core/Text.h"
#include "platform/Motion.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "platform/dispatch.h"
#include "ui/AppDelegate.h"
#include "ui/EndOfProcess.h"
#include "ui/Localized.h"
#include "ui/LogView.h"
#include "ui/tour/Finger.h"
#include "workspace/ProjectName.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <unistd.h>

#include <QPixmap>
#include <QPlainTextEdit>
#include <QTest>

namespace {

using finger::tap;
using finger::waitToSee;

constexpr int settleMilliseconds = 50;
constexpr const char* projectName = "HelloTweak";
constexpr const char* pictureFolder = "/var/mobile/Pictures";
constexpr const char* packageFolder = "/var/mobile/Documents/Tweakbench/HelloTweak";

class Tour {
 public:
  // Reports go to `report`, since the application redirects its standard streams onto its logs.
  explicit Tour(FILE* report) : report_(report) {
    createDirectoryAtPath(pictureFolder);
    // Out of the way, so that nothing in the pictures looks hovered over.
    const QRect screen = UIScreen::mainScreen()->rect();
    QCursor::setPos(screen.right(), screen.height() * 2 / 3);
  }

  void go() {
    mainJob();
    otherScreens("");
    setLanguage(Language::Arabic);
    tap("Choose Project");
    tap(projectName);
    finger::waitUntil([] { return QGuiApplication::isRightToLeft(); }, "the screens do not turn round");
    arabic();
  }

 private:
  // Of the screen as it is when everything that was asked for has been laid out; `Moment::This` is for what
  // would be gone by then.
  enum class Moment { Settled, This };

  void picture(const char* name, Moment moment = Moment::Settled) {
    if (moment == Moment::Settled) QTest::qWait(settleMilliseconds);
    const QString path =
        QStringLiteral("%1/%2-%3.png").arg(pictureFolder).arg(++number_, 2, 10, QLatin1Char('0')).arg(name);
    if (!UIScreen::mainScreen()->grab().save(path))
      throw finger::Missing("cannot save " + path.toStdString());
    std::fprintf(report_, "picture %s\n", qUtf8Printable(path));
  }

  void mainJob() {
    picture("main-empty");
    tap("New Project");
    waitToSee(localized(text::projectOptions));
    picture("project-sheet");
    tap(localized(text::createNewProject));
    waitToSee("~ root$");
    finger::type("Hello Tweak");
    picture("name-prompt");
    tap(localized(text::confirm));
    waitToSee(projectName);
    picture("main-project");
    editTweak();
    build();
  }

  void editTweak() {
    tap("Tweak.x");
    auto* const editor = qobject_cast<QPlainTextEdit*>(finger::find("File text"));
    finger::waitUntil([editor] { return !editor->toPlainText().isEmpty(); }, "the editor stays empty");
    picture("editor");
    QTest::keyClick(editor, Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(finger::find("Find text"), "hook");
    picture("editor-find");
    QTest::keyClick(finger::find("Find text"), Qt::Key_Escape);
    editor->moveCursor(QTextCursor::Start);
    QTest::keyClicks(editor, "// Edited on the tour.");
    QTest::keyClick(editor, Qt::Key_Return);
    tap("Save");
    waitToSee("Reload");
  }

  void build() {
    tap("Build");
    waitToSee("Make Package");
    picture("build-empty");
    tap("Make Package");
    waitToSee(localized(text::pleaseWait));
    picture("build-progress", Moment::This);
    finger::waitUntil([] { return !finger::sees(localized(text::pleaseWait)); },
                      "Theos's update does not end");
    tap("Make Package");
    waitToSee(localized(text::goToDebFolder));
    picture("build-success");
    tap(localized(text::cancel));
    const auto* const log = qobject_cast<LogView*>(finger::find("Build log"));
    if (log->text().empty()) throw finger::Missing("the build log is empty");
    picture("build-log");
    QTest::keyClick(finger::find("Build log"), Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(finger::find("Find text"), "nowhere");
    picture("build-find");
    tap("Close find");
  }

  void otherScreens(const char* language) {
    const std::string suffix = language;
    tap("Info");
    waitToSee("Tip");
    picture(("hint" + suffix).c_str());
    tap(localized(text::cancel));
    tap("Back");
    tap("Choose Project");
    waitToSee(localized(text::loadProject));
    picture(("choose-project" + suffix).c_str());
    tap(localized(text::cancel));
    tap("About");
    waitToSee(localized(text::developedBy));
    picture(("about" + suffix).c_str());
    tap("Back");
    waitToSee("Files");
  }

  void arabic() {
    picture("main-arabic");
    tap("Tweak.x");
    waitToSee("Tweak.x");
    picture("editor-arabic");
    tap("Cancel");
    tap("New Project");
    waitToSee(localized(text::projectOptions));
    picture("project-sheet-arabic");
    tap(localized(text::createNewProject));
    waitToSee("~ root$");
    picture("name-prompt-arabic");
    tap(localized(text::cancel));
    tap(".theos");
    waitToSee(QString::fromUtf8(text::notSupportedYet));
    picture("not-supported-arabic");
    tap(localized(text::ok));
    tap("Build");
    tap("Make Package");
    waitToSee(localized(text::goToDebFolder));
    picture("build-success-arabic");
    tap(localized(text::cancel));
    picture("build-log-arabic");
    otherScreens("-arabic");
  }

  FILE* report_;
  int number_ = 0;
};

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
    std::fprintf(report, "package %s/%s\n", packageFolder, name.c_str());
    return true;
  }
  std::fprintf(report, "There is no package in %s\n", packageFolder);
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
        Tour(report).go();
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
