#include "ui/OpenAddress.h"

#include "platform/UIApplication.h"

#include <utility>

void openAddress(const std::string& address, std::function<void(bool)> completion) {
  UIApplication::sharedApplication()->openURL(QUrl(QString::fromStdString(address)), {},
                                              std::move(completion));
}
