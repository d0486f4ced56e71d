#include "platform/NSNotificationCenter.h"

#include "platform/EventLoop.h"

#include <algorithm>
#include <utility>

#include <QPointer>

struct NSNotificationCenter::Registration {
  QPointer<QObject> observer;
  QString name;
  bool anyObject = true;
  QPointer<QObject> object;
  Handler handler;
  bool removed = false;

  bool wants(const QString& posted, const QObject* about) const {
    return observer && name == posted && (anyObject || (object && object == about));
  }
};

NSNotificationCenter& NSNotificationCenter::defaultCenter() {
  static NSNotificationCenter center;
  return center;
}

void NSNotificationCenter::addObserver(QObject* observer, const QString& name, QObject* object,
                                       Handler handler) {
  forget([](const Registration& registration) {
    return !registration.observer || (!registration.anyObject && !registration.object);
  });
  auto registration = std::make_shared<Registration>();
  registration->observer = observer;
  registration->name = name;
  registration->anyObject = object == nullptr;
  registration->object = object;
  registration->handler = std::move(handler);
  registrations_.push_back(std::move(registration));
}

void NSNotificationCenter::removeObserver(QObject* observer, const QString& name) {
  forget([&](const Registration& registration) {
    return registration.observer == observer && (name.isNull() || registration.name == name);
  });
}

void NSNotificationCenter::postNotificationName(const QString& name, QObject* object,
                                                const QVariantMap& userInfo) {
  // Handlers may add, remove or destroy observers, so the walk is over a copy.
  std::vector<std::shared_ptr<Registration>> wanted;
  for (const auto& registration : registrations_) {
    if (registration->wants(name, object)) wanted.push_back(registration);
  }
  const NSNotification notification{name, object, userInfo};
  for (const auto& registration : wanted) {
    if (!registration->removed && registration->observer)
      atEventBoundary(registration->handler)(notification);
  }
}

void NSNotificationCenter::forget(const std::function<bool(const Registration&)>& unwanted) {
  std::erase_if(registrations_, [&](const std::shared_ptr<Registration>& registration) {
    if (!unwanted(*registration)) return false;
    registration->removed = true;
    return true;
  });
}
