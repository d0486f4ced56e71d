#include "platform/EventLoop.h"
#include "platform/UIApplication.h"
#include "support/SystemLog.h"

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <QApplication>
#include <QEvent>
#include <QTest>
#include <QThread>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(Queues, RunAJobOnAWorkerAndItsResultOnTheMainThread) {
  std::atomic<bool> onWorker = false;
  bool resultOnMain = false;
  dispatch_async(dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_HIGH, 0), [&] {
    onWorker = QThread::currentThread() != qApp->thread();
    dispatch_async(dispatch_get_main_queue(),
                   [&] { resultOnMain = QThread::currentThread() == qApp->thread(); });
  });
  EXPECT_TRUE(QTest::qWaitFor([&] { return resultOnMain; }));
  EXPECT_TRUE(onWorker);
}

TEST(Queues, RunMainJobsInOrderAndNeverBeforeTheCallReturns) {
  std::vector<int> order;
  dispatch_async(dispatch_get_main_queue(), [&] { order.push_back(1); });
  dispatch_after(0, dispatch_get_main_queue(), [&] { order.push_back(2); });
  dispatch_after(0.001, dispatch_get_main_queue(), [&] { order.push_back(3); });
  EXPECT_TRUE(order.empty());
  EXPECT_TRUE(QTest::qWaitFor([&] { return order.size() == 3; }));
  EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(Queues, LogWhatAJobThrowsAndGoOn) {
  systemlog::take();
  dispatch_async(dispatch_get_global_queue(DISPATCH_QUEUE_PRIORITY_DEFAULT, 0),
                 [] { throw std::runtime_error("worker failed"); });
  dispatch_wait_for_global_queues();
  EXPECT_THAT(systemlog::take(), ElementsAre(HasSubstr("worker failed")));
}

TEST(DelayedCalls, AreMadeOnceAndDroppedWithTheirTarget) {
  int calls = 0;
  QObject lasting;
  auto shortLived = std::make_unique<QObject>();
  performSelectorAfterDelay(
      shortLived.get(), [&] { calls += 100; }, 0);
  performSelectorAfterDelay(
      &lasting, [&] { calls += 1; }, 0);
  shortLived.reset();
  EXPECT_EQ(calls, 0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return calls > 0; }));

  performSelectorAfterDelay(
      &lasting, [&] { calls += 1000; }, 0);
  cancelPreviousPerformRequests(&lasting);
  performSelectorAfterDelay(
      &lasting, [&] { calls += 1; }, 0.001);
  EXPECT_TRUE(QTest::qWaitFor([&] { return calls != 1; }));
  EXPECT_EQ(calls, 2);
}

TEST(DelayedCalls, MayDestroyTheirTarget) {
  auto* target = new QObject;
  bool called = false;
  performSelectorAfterDelay(
      target,
      [&called, target] {
        delete target;
        called = true;
      },
      0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return called; }));
}

class Thrower : public QObject {
 public:
  bool event(QEvent*) override { throw std::runtime_error("event failed"); }
};

TEST(TheEventBoundary, LogsWhatAHandlerThrowsAndTheApplicationGoesOn) {
  systemlog::take();
  Thrower thrower;
  QCoreApplication::postEvent(&thrower, new QEvent(QEvent::User));
  QCoreApplication::processEvents();
  EXPECT_THAT(systemlog::take(), ElementsAre(HasSubstr("event failed")));

  atEventBoundary([] { throw 42; })();
  EXPECT_THAT(systemlog::take(), ElementsAre(HasSubstr("unknown type")));
}

TEST(OpeningAURL, AsksTheOpenerAndReportsItsAnswerLater) {
  UIApplication* application = UIApplication::sharedApplication();
  std::vector<QString> asked;
  std::vector<bool> answers;
  application->setURLOpener([&](const QUrl& url) {
    asked.push_back(url.toString());
    return asked.size() == 1;
  });
  const auto remember = [&](bool opened) { answers.push_back(opened); };
  application->openURL(QUrl("some://first"), {}, remember);
  application->openURL(QUrl("some://second"), {}, remember);
  application->setURLOpener({});
  application->openURL(QUrl("some://third"), {}, remember);
  EXPECT_TRUE(answers.empty());
  EXPECT_TRUE(QTest::qWaitFor([&] { return answers.size() == 3; }));
  EXPECT_THAT(answers, ElementsAre(true, false, false));
  EXPECT_THAT(asked, ElementsAre("some://first", "some://second"));
  EXPECT_THAT(systemlog::take(), ElementsAre(HasSubstr("some://third")));
}

}  // namespace
