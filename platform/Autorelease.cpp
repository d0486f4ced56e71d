#include "platform/Autorelease.h"

#include <utility>
#include <vector>

#include <QCoreApplication>

namespace {

std::vector<std::shared_ptr<void>>& pool() {
  static std::vector<std::shared_ptr<void>> objects;
  return objects;
}

}  // namespace

void autorelease(std::shared_ptr<void> object) {
  if (!object || !QCoreApplication::instance()) return;
  pool().push_back(std::move(object));
  // The event holds no object: an application that ends with events left over drops them under a lock that
  // the objects would need for going away.
  QMetaObject::invokeMethod(QCoreApplication::instance(), drainAutoreleasePool, Qt::QueuedConnection);
}

void drainAutoreleasePool() {
  // What goes may leave more to be released.
  while (!pool().empty()) {
    const std::vector<std::shared_ptr<void>> going = std::exchange(pool(), {});
  }
}
