#include "ui/screens/AppDelegate.h"

#include "core/LauncherContract.h"
#include "core/run_cmd.h"
#include "platform/EventLoop.h"
#include "platform/HostOpener.h"
#include "platform/UIApplication.h"
#include "ui/dialogs/Dialogs.h"
#include "ui/screens/ViewController.h"

#include <utility>

namespace {
// make removes its half-written targets when it is asked to end; this is the time it has for that.
constexpr int graceMilliseconds = 2000;
}  // namespace

std::unique_ptr<AppDelegate> makeAppDelegate() {
  auto delegate = std::make_unique<AppDelegate>();
  delegate->setWindow(makeUIWindow());
  // The window first: start-up may show a dialog, which must come to lie above it.
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
  UIApplication::sharedApplication()->openURL(QUrl(QString::fromStdString(address)), {},
                                              std::move(completion));
}

void openAddressesOnHost() {
  UIApplication* const application = UIApplication::sharedApplication();
  auto* const host = new HostOpener([](const QUrl& url) { showAddress(url.toString()); }, application);
  host->connectTo(opener::applicationDescriptor);
  application->setURLOpener([host](const QUrl& url) { return host->open(url); });
}
