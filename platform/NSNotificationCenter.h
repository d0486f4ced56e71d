// Notifications by name.
#pragma once

#include <functional>

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
class NSNotificationCenter : public QObject {
  Q_OBJECT

 public:
  using Handler = std::function<void(const NSNotification&)>;

  static NSNotificationCenter& defaultCenter();

  // `observer` must not be null; it is forgotten when it is destroyed. A null `object` means any object. An
  // observer added while a notification is being delivered does not get that one.
  void addObserver(QObject* observer, const QString& name, QObject* object, Handler handler);
  // Ends every registration of `observer`, at once, during a delivery too.
  void removeObserver(QObject* observer);
  void postNotificationName(const QString& name, QObject* object, const QVariantMap& userInfo = {});

 signals:
  void posted(const NSNotification& notification);
};
