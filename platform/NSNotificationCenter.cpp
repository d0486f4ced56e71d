#include "platform/NSNotificationCenter.h"

#include "platform/EventLoop.h"

#include <utility>

#include <QPointer>

NSNotificationCenter& NSNotificationCenter::defaultCenter() {
  static NSNotificationCenter center;
  return center;
}

void NSNotificationCenter::addObserver(QObject* observer, const QString& name, QObject* object,
                                       Handler handler) {
  connect(this, &NSNotificationCenter::posted, observer,
          [name, any = object == nullptr, wanted = QPointer(object),
           handler = atEventBoundary(std::move(handler))](const NSNotification& notification) mutable {
            const bool isAbout = any || (wanted && wanted == notification.object);
            if (name == notification.name && isAbout) handler(notification);
          });
}

void NSNotificationCenter::removeObserver(QObject* observer) {
  disconnect(this, &NSNotificationCenter::posted, observer, nullptr);
}

void NSNotificationCenter::postNotificationName(const QString& name, QObject* object,
                                                const QVariantMap& userInfo) {
  emit posted({name, object, userInfo});
}
