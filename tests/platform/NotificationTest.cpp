#include "platform/NSNotificationCenter.h"

#include <memory>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

class Notifications : public testing::Test {
 protected:
  void observe(QObject* observer, const std::string& mark, QObject* object = nullptr) {
    center.addObserver(observer, name, object,
                       [this, mark](const NSNotification&) { heard.push_back(mark); });
  }
  std::vector<std::string> heardOf(const QString& posted, QObject* object = nullptr) {
    heard.clear();
    center.postNotificationName(posted, object);
    return heard;
  }

  NSNotificationCenter center;
  const QString name = "SomethingHappened";
  QObject first;
  QObject second;
  std::vector<std::string> heard;
};

TEST_F(Notifications, ReachThoseWhoAskedForTheNameAndTheObjectInOrderUntilTheyGo) {
  auto shortLived = std::make_unique<QObject>();
  observe(&first, "any");
  observe(&second, "this", &first);
  observe(&first, "other", &second);
  observe(shortLived.get(), "gone");
  shortLived.reset();
  EXPECT_THAT(heardOf(name, &first), ElementsAre("any", "this"));
  EXPECT_THAT(heardOf("SomethingElse"), ElementsAre());
}

TEST_F(Notifications, MayBeAnsweredByRemovingAddingAndDestroyingObserversAndByFailing) {
  auto victim = std::make_unique<QObject>();
  center.addObserver(&first, name, nullptr, [&](const NSNotification&) {
    heard.push_back("first");
    center.removeObserver(&second);
    victim.reset();
    observe(&first, "late");
    throw std::runtime_error("no answer");
  });
  observe(&second, "second");
  observe(victim.get(), "victim");
  EXPECT_THAT(heardOf(name), ElementsAre("first"));
  EXPECT_THAT(heardOf(name), ElementsAre("first", "late"));
}

}  // namespace
