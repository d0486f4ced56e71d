// The guided tour: tour [WIDTHxHEIGHT] [main-job]. Does the main job from an empty device to a built package
// on the real screens with real clicks and keys, then (unless only the main job is asked for) opens every
// screen and dialog, in each language, and takes pictures. Needs a device without projects and backups, and
// prints the paths of the pictures and of the package there. The size is in logical pixels.
#include "core/FileManager.h"
#include "core/Text.h"
#include "core/run_cmd.h"
#include "platform/EventLoop.h"
#include "platform/UIScreen.h"
#include "tour/Finger.h"
#include "ui/Localized.h"
#include "ui/controls/TextView.h"
#include "ui/dialogs/Dialogs.h"
#include "ui/screens/AppDelegate.h"
#include "workspace/CurrentProject.h"
#include "workspace/Projects.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <unistd.h>

#include <QCursor>
#include <QFile>
#include <QTest>

namespace {

constexpr const char* pictureFolder = "/var/mobile/Pictures";
constexpr const char* packageFolder = "/var/mobile/Documents/Tweakbench/HelloTweak";
constexpr int settleMilliseconds = 50;

class Tour {
 public:
  // Reports go to `report`, since the application redirects its standard streams onto its logs.
  explicit Tour(FILE* report) : report_(report) {
    createDirectoryAtPath(pictureFolder);
    // Every screen is empty there, so no control is hovered in the pictures.
    const UIScreen& screen = *UIScreen::mainScreen();
    QCursor::setPos(screen.mapToGlobal(QPoint(screen.width() / 4, 2)));
  }

  // Does the steps of steps.txt, or only those of its first section. `ending` ends the names of the pictures.
  void go(bool onlyMainJob, const QString& ending = {}) {
    ending_ = ending;
    QFile file(QStringLiteral(":/tour/steps.txt"));
    if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("there are no steps");
    const QString steps =
        QString::fromUtf8(file.readAll()).replace(QStringLiteral("\n  "), QStringLiteral("\v"));
    int sections = 0;
    for (QString step : steps.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
      if (step.startsWith(QLatin1Char('['))) ++sections;
      if (onlyMainJob && sections > 1) return;
      if (step.startsWith(QLatin1Char('[')) || step.startsWith(QLatin1Char('#'))) continue;
      step.replace(QLatin1Char('\v'), QLatin1Char('\n'));
      take(step.section(QLatin1Char(' '), 0, 0), step.section(QLatin1Char(' '), 1));
    }
  }

 private:
  void take(const QString& verb, const QString& rest) {
    const QString first = rest.section(QStringLiteral(" | "), 0, 0);
    const QString second = rest.section(QStringLiteral(" | "), 1);
    if (verb == "tap" || verb == "back") {
      finger::tap(rest);
      if (verb == "back") finger::waitToSee("Reload");
    } else if (verb == "see") {
      finger::waitToSee(rest);
    } else if (verb == "miss") {
      waitToMiss(rest);
    } else if (verb == "text") {
      const auto* const text = qobject_cast<TextView*>(finger::find(rest));
      finger::waitUntil([text] { return text && text->length() > 0; }, rest + " stays empty");
    } else if (verb == "type") {
      finger::type(rest);
    } else if (verb == "keys" || verb == "key") {
      if (!second.isEmpty()) finger::find(second)->setFocus();
      QWidget* const focused = QApplication::focusWidget();
      if (!focused) throw finger::Missing("nothing has the focus");
      if (verb == "keys") return QTest::keyClicks(focused, first);
      const QKeyCombination keys = QKeySequence(first)[0];
      QTest::keyClick(focused, keys.key(), keys.keyboardModifiers());
    } else if (verb == "build") {
      // The very first tap lets Theos update itself and builds nothing.
      do {
        finger::tap("Make Package");
        finger::waitToSee(localized(text::pleaseWait));
        waitToMiss(localized(text::pleaseWait));
      } while (finger::sees(localized(text::tapAgainToBuild)));
    } else if (verb == "picture") {
      if (!second.isEmpty()) finger::waitToSee(second);
      QTest::qWait(settleMilliseconds);
      // On a busy machine the wait may end before them.
      QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
      savePicture(first);
    } else if (verb == "snap") {
      savePicture(rest);
    } else if (verb == "notice") {
      showNotice(QCoreApplication::translate("", first.toUtf8()),
                 QCoreApplication::translate("", second.toUtf8()));
    } else if (verb == "address") {
      showToCopy(localized(text::addressToOpen), rest);
    } else if (verb == "$") {
      run_cmd(rest.toUtf8().constData());
    } else {
      throw std::runtime_error("there is no step called " + verb.toStdString());
    }
  }

  static void waitToMiss(const QString& text) {
    finger::waitUntil([&text] { return !finger::sees(text); }, text + " stays");
  }

  void savePicture(const QString& name) {
    const QString path = QStringLiteral("%1/%2-%3%4.png")
                             .arg(QLatin1String(pictureFolder))
                             .arg(++number_, 3, 10, QLatin1Char('0'))
                             .arg(name, ending_);
    if (!UIScreen::mainScreen()->grab().save(path))
      throw finger::Missing("cannot save " + path.toStdString());
    std::fprintf(report_, "picture %s\n", qUtf8Printable(path));
  }

  FILE* report_;
  QString ending_;
  int number_ = 0;
};

// Changes the setting directly, since the menu would end the process, and refreshes the screen by opening the
// list of backups.
void turnToArabic() {
  setLanguage(Language::Arabic);
  for (const TextPair& each : {text::projectOptions, text::restore, text::cancel}) finger::tap(each.english);
  finger::waitUntil([] { return QGuiApplication::isRightToLeft(); }, "the screens do not turn round");
}

void goTour(FILE* report, bool onlyMainJob) {
  // The tour ends by deleting all projects and backups.
  if (!projectNames().empty() || !backupNames().empty())
    throw std::runtime_error("there are projects or backups in this device, and it would delete them");
  Tour tour(report);
  tour.go(onlyMainJob);
  if (onlyMainJob) return;
  turnToArabic();
  tour.go(false, "-arabic");
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
    // No picture of a dialog in motion, or of a caret that is just out.
    setMotionEnabled(false);
    QApplication::setCursorFlashTime(0);
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
