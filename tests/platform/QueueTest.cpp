#include "platform/EventLoop.h"
#include "support/Clock.h"
#include "support/SystemLog.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <QCoreApplication>
#include <QEvent>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(Queues, RunMainJobsInOrderAndNeverBeforeTheCallReturns) {
  std::vector<int> order;
  dispatch_async(dispatch_get_main_queue(), [&] { order.push_back(1); });
  dispatch_after(0, dispatch_get_main_queue(), [&] { order.push_back(2); });
  dispatch_after(0.001, dispatch_get_main_queue(), [&] { order.push_back(3); });
  EXPECT_TRUE(order.empty());
  EXPECT_TRUE(QTest::qWaitFor([&] { return order.size() == 3; }));
  EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(DelayedCalls, AreMadeOnceAtTheirTimeAndDroppedWithTheirTarget) {
  const HeldClock clock;
  std::vector<int> calls;
  QObject lasting;
  auto shortLived = std::make_unique<QObject>();
  auto* suicidal = new QObject;
  const auto call = [&calls](int number) { return [&calls, number] { calls.push_back(number); }; };
  performSelectorAfterDelay(&lasting, call(1), 0.1);
  performSelectorAfterDelay(shortLived.get(), call(2), 0.1);
  dispatch_after(0.15, dispatch_get_main_queue(), call(3));
  performSelectorAfterDelay(
      suicidal,
      [&calls, suicidal] {
        delete suicidal;
        calls.push_back(4);
      },
      0.2);
  shortLived.reset();
  const auto madeAfter = [&calls](long milliseconds) {
    HeldClock::turn(milliseconds);
    for (int turn = 0; turn < 3; ++turn) QCoreApplication::processEvents();
    return std::exchange(calls, {});
  };
  EXPECT_THAT(madeAfter(99), ElementsAre());
  EXPECT_THAT(madeAfter(1), ElementsAre(1));
  EXPECT_THAT(madeAfter(49), ElementsAre());
  EXPECT_THAT(madeAfter(1), ElementsAre(3));
  EXPECT_THAT(madeAfter(49), ElementsAre());
  EXPECT_THAT(madeAfter(1), ElementsAre(4));
  performSelectorAfterDelay(&lasting, call(5), 0.1);
  cancelPreviousPerformRequests(&lasting);
  performSelectorAfterDelay(&lasting, call(6), 0.1);
  EXPECT_THAT(madeAfter(1000), ElementsAre(6));
  EXPECT_THAT(madeAfter(1000), ElementsAre());
}

class Thrower : public QObject {
 public:
  bool event(QEvent*) override { throw std::runtime_error("event failed"); }
};

TEST(TheEventBoundary, LogsWhatHandlersAndJobsThrowAndTheApplicationGoesOn) {
  systemlog::take();
  Thrower thrower;
  QCoreApplication::postEvent(&thrower, new QEvent(QEvent::User));
  QCoreApplication::processEvents();
  dispatch_async(dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_DEFAULT, 0),
                 [] { throw std::runtime_error("worker failed"); });
  dispatch_wait_for_global_queues();
  atEventBoundary([] { throw 42; })();
  EXPECT_THAT(systemlog::take(),
              ElementsAre(HasSubstr("event failed"), HasSubstr("worker failed"), HasSubstr("unknown type")));
}

}  // namespace
