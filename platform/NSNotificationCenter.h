// Notifications by name.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QObject>
#include <QString>
#include <QVariantMap>

struct NSNotification {
  QString name;
  QObject* object = nullptr;  // what it is about; valid during the call only
  QVariantMap userInfo;
};

// Main thread only. Delivery is synchronous, in the order of registration. An exception from an observer is
// logged, and the others are called.
class NSNotificationCenter {
 public:
  using Handler = std::function<void(const NSNotification&)>;

  static NSNotificationCenter& defaultCenter();

  // `observer` must not be null; it is forgotten when it is destroyed. A null `object` means any object. An
  // observer added while a notification is being delivered does not get that one.
  void addObserver(QObject* observer, const QString& name, QObject* object, Handler handler);
  // Without a name, every registration of `observer` ends. Takes effect at once, during a delivery too.
  void removeObserver(QObject* observer, const QString& name = {});
  void postNotificationName(const QString& name, QObject* object, const QVariantMap& userInfo = {});

 private:
  struct Registration;

  void forget(const std::function<bool(const Registration&)>& unwanted);

  std::vector<std::shared_ptr<Registration>> registrations_;
};
