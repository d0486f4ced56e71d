#include "platform/NSNotificationCenter.h"
#include "support/SystemLog.h"

#include <memory>
#include <stdexcept>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Notifications : public testing::Test {
 protected:
  void observe(QObject* observer, const std::string& mark, QObject* object = nullptr) {
    center.addObserver(observer, name, object,
                       [this, mark](const NSNotification&) { heard.push_back(mark); });
  }

  NSNotificationCenter center;
  const QString name = "SomethingHappened";
  QObject first;
  QObject second;
  std::vector<std::string> heard;
};

TEST_F(Notifications, ReachThoseWhoAskedForTheNameAndTheObjectInOrderUntilTheyGo) {
  QObject sender;
  QObject other;
  auto shortLived = std::make_unique<QObject>();
  observe(&first, "any");
  observe(&second, "this", &sender);
  observe(&first, "other", &other);
  observe(shortLived.get(), "gone");
  shortLived.reset();
  center.addObserver(&second, "SomethingElse", nullptr,
                     [this](const NSNotification&) { heard.push_back("else"); });
  center.addObserver(&second, name, nullptr, [&](const NSNotification& notification) {
    EXPECT_EQ(notification.object, &sender);
    EXPECT_EQ(notification.name, name);
    heard.push_back(notification.userInfo.value("key").toString().toStdString());
  });
  center.postNotificationName(name, &sender, {{"key", "value"}});
  EXPECT_THAT(std::exchange(heard, {}), ElementsAre("any", "this", "value"));
  center.removeObserver(&first);
  center.postNotificationName(name, &sender, {{"key", "value"}});
  EXPECT_THAT(heard, ElementsAre("this", "value"));
}

TEST_F(Notifications, MayBeAnsweredByRemovingAddingAndDestroyingObservers) {
  auto victim = std::make_unique<QObject>();
  center.addObserver(&first, name, nullptr, [&](const NSNotification&) {
    heard.push_back("first");
    center.removeObserver(&second);
    victim.reset();
    observe(&first, "late");
  });
  observe(&second, "second");
  observe(victim.get(), "victim");
  center.postNotificationName(name, nullptr);
  EXPECT_THAT(heard, ElementsAre("first"));
  heard.clear();
  center.postNotificationName(name, nullptr);
  EXPECT_THAT(heard, ElementsAre("first", "late"));
}

TEST_F(Notifications, ReachTheOthersWhenOneObserverThrows) {
  systemlog::take();
  center.addObserver(&first, name, nullptr,
                     [](const NSNotification&) { throw std::runtime_error("no answer"); });
  observe(&second, "second");
  center.postNotificationName(name, nullptr);
  EXPECT_THAT(heard, ElementsAre("second"));
  EXPECT_THAT(systemlog::take(), ElementsAre(HasSubstr("no answer")));
}

}  // namespace
