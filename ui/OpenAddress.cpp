#include "ui/OpenAddress.h"

#include "core/LauncherContract.h"
#include "platform/HostOpener.h"
#include "platform/UIApplication.h"
#include "ui/dialogs/AddressNotice.h"

#include <utility>

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
