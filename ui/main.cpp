// The application's entry.
#include "core/History.h"
#include "core/Process.h"
#include "platform/UIApplication.h"
#include "ui/screens/AppDelegate.h"

#include <cstdio>
#include <cstdlib>
#include <sys/prctl.h>
#include <unistd.h>

#include <QGuiApplication>
#include <QIcon>

namespace {

// Standard error may be a captured log, which holds only what commands print.
void logQtMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
  NSLog(message.toStdString());
  // Qt ends by an abort where its display is dead or lets nobody in, and says so in a paragraph about
  // plugins.
  if (type == QtFatalMsg && QGuiApplication::platformName().isEmpty()) {
    std::fputs(
        "tweakbench: The application could not open its display; start Tweakbench as the user whose desktop "
        "session it is.\n",
        stderr);
    _exit(EXIT_FAILURE);
  }
}

}  // namespace

int main(int argc, char** argv) {
  // What a build starts runs as the same user: it must not be able to look into this process.
  prctl(PR_SET_DUMPABLE, 0);
  surviveRefusedWrites();
  // On a phone every command runs as root; elsewhere this fails and the user's own rights do.
  if (setuid(0) != 0) NSLog("Running with the rights of the user who started the program");
  qInstallMessageHandler(logQtMessage);
  return UIApplicationMain(argc, argv, [] {
    // By these a desktop joins the window with its entry in the menu.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.example.Tweakbench"));
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/pictures/application.png")));
    endCommandsWithApplication();
    openAddressesOnHost();
    connectHistory();
    followLauncher();
    return makeAppDelegate();
  });
}
