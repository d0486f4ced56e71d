#include "platform/Autorelease.h"

#include <utility>

#include <QCoreApplication>

void autorelease(std::shared_ptr<void> object) {
  if (!object || !QCoreApplication::instance()) return;
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [kept = std::move(object)]() mutable { kept.reset(); },
      Qt::QueuedConnection);
}
