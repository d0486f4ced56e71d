#include "ui/screens/AppDelegate.h"

#include "core/LauncherContract.h"
#include "core/Process.h"
#include "core/run_cmd.h"
#include "platform/EventLoop.h"
#include "platform/HostOpener.h"
#include "platform/UIScreen.h"
#include "ui/Localized.h"
#include "ui/dialogs/Dialogs.h"
#include "ui/screens/ViewController.h"

#include <cstdio>
#include <cstdlib>
#include <sys/socket.h>

#include <QSocketNotifier>

namespace {

// make removes its half-written targets when it is asked to end; this is the time it has for that.
constexpr int graceMilliseconds = 2000;

// What follows filza:// is a path, in which #, ? and % are letters like others.
QUrl urlOf(const std::string& address) {
  constexpr std::string_view folderScheme = "filza://";
  if (!address.starts_with(folderScheme)) return QUrl(QString::fromStdString(address));
  const QByteArray path = QByteArray::fromStdString(address.substr(folderScheme.size()));
  return QUrl::fromEncoded(folderScheme.data() + path.toPercentEncoding("/!$&'()*+,;=:@"));
}

void takeMessage(QSocketNotifier& messages) {
  char message[window::longestMessage];
  const ssize_t got = recv(window::applicationDescriptor, message, sizeof message, MSG_DONTWAIT);
  if (got == 0) messages.setEnabled(false);
  if (got <= 0) return;
  const QByteArray rest(message + 1, got - 1);
  if (message[0] == window::comeForward) UIScreen::mainScreen()->comeForward(rest);
  if (message[0] == window::wasAt) UIScreen::mainScreen()->restoreGeometry(rest);
}

}  // namespace

std::unique_ptr<AppDelegate> makeAppDelegate() {
  translateOwnTexts();
  auto delegate = std::make_unique<AppDelegate>();
  delegate->setWindow(makeUIWindow());
  // The window first: start-up may show a dialog, which must be above it.
  delegate->window()->makeKeyAndVisible();
  delegate->window()->setRootViewController(std::make_shared<ViewController>());
  return delegate;
}

void endCommandsWithApplication() {
  UIApplication* const application = UIApplication::sharedApplication();
  QObject::connect(application, &QCoreApplication::aboutToQuit, application, atEventBoundary([] {
                     stopCommands(graceMilliseconds);
                     dispatch_wait_for_global_queues();
                   }));
}

void openAddress(const std::string& address, std::function<void(bool)> completion) {
  UIApplication::sharedApplication()->openURL(urlOf(address), {}, std::move(completion));
}

void followLauncher() {
  if (!takeLauncherSocket(window::applicationDescriptor)) return;
  UIApplication* const application = UIApplication::sharedApplication();
  auto* const messages =
      new QSocketNotifier(window::applicationDescriptor, QSocketNotifier::Read, application);
  QObject::connect(messages, &QSocketNotifier::activated, application,
                   atEventBoundary([messages] { takeMessage(*messages); }));
  // The window's place is there already.
  takeMessage(*messages);
}

void startAgain() {
  const QByteArray message = window::startAgain + UIScreen::mainScreen()->saveGeometry();
  if (takeLauncherSocket(window::applicationDescriptor))
    send(window::applicationDescriptor, message.constData(), static_cast<std::size_t>(message.size()),
         MSG_DONTWAIT | MSG_NOSIGNAL);
  // Nothing is to be saved, and the objects on screen are not to be taken apart from within one of their own
  // handlers.
  std::fflush(nullptr);
  std::_Exit(EXIT_SUCCESS);
}

void openAddressesOnHost() {
  UIApplication* const application = UIApplication::sharedApplication();
  auto* const host = new HostOpener(
      [](const QUrl& url, const QString& hostPath) {
        hostPath.isEmpty() ? showToCopy(localized(text::addressToOpen), url.toString())
                           : showToCopy(localized(text::folderOnComputer), hostPath);
      },
      application);
  host->connectTo(opener::applicationDescriptor);
  application->setURLOpener([host](const QUrl& url) { return host->open(url); });
}
