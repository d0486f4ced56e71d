#include "platform/dispatch.h"

#include "core/NSLog.h"
#include "platform/EventBoundary.h"
#include "platform/HandOver.h"
#include "platform/NSRunLoop.h"

#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include <QCoreApplication>
#include <QThread>

class DispatchQueue {
 public:
  enum class Kind { Main, Global };
  Kind kind = Kind::Main;
  QThread::Priority priority = QThread::InheritPriority;
};

namespace {

std::mutex workersMutex;
std::vector<std::unique_ptr<QThread>>& workers() {
  static std::vector<std::unique_ptr<QThread>> threads;
  return threads;
}

void runOnMainQueue(std::function<void()> job) {
  if (QCoreApplication* application = QCoreApplication::instance()) {
    auto handed = [job = atEventBoundary(std::move(job))]() mutable {
      handover::taken();
      job();
    };
    handover::given();
    QMetaObject::invokeMethod(application, std::move(handed), Qt::QueuedConnection);
  }
}

void runOnWorker(std::function<void()> job, QThread::Priority priority) {
  auto kept = std::make_shared<std::function<void()>>(std::move(job));
  std::unique_ptr<QThread> worker(QThread::create([kept] {
    atEventBoundary(std::move(*kept))();
    handover::given();
  }));
  worker->start(priority);
  // A refused thread is told by nothing but this: no signal comes, and no exception.
  if (worker->isRunning() || worker->isFinished()) {
    const std::lock_guard lock(workersMutex);
    std::erase_if(workers(), [](const auto& thread) { return thread->isFinished() && thread->wait(); });
    workers().push_back(std::move(worker));
    return;
  }
  NSLog("No thread could be started for a queued job; it runs on the main thread.");
  runOnMainQueue(std::move(*kept));
}

}  // namespace

dispatch_queue_t dispatch_get_main_queue() {
  static const DispatchQueue queue{DispatchQueue::Kind::Main, QThread::InheritPriority};
  return &queue;
}

dispatch_queue_t dispatch_get_global_queue(long priority, unsigned long /*flags*/) {
  static const DispatchQueue high{DispatchQueue::Kind::Global, QThread::HighPriority};
  static const DispatchQueue usual{DispatchQueue::Kind::Global, QThread::NormalPriority};
  static const DispatchQueue low{DispatchQueue::Kind::Global, QThread::LowPriority};
  if (priority == DISPATCH_QUEUE_PRIORITY_HIGH) return &high;
  if (priority == DISPATCH_QUEUE_PRIORITY_LOW) return &low;
  return &usual;
}

void dispatch_async(dispatch_queue_t queue, std::function<void()> job) {
  if (queue->kind == DispatchQueue::Kind::Main) {
    runOnMainQueue(std::move(job));
  } else {
    runOnWorker(std::move(job), queue->priority);
  }
}

void dispatch_after(double seconds, dispatch_queue_t queue, std::function<void()> job) {
  if (seconds <= 0) {
    dispatch_async(queue, std::move(job));
  } else if (QCoreApplication* application = QCoreApplication::instance()) {
    performSelectorAfterDelay(
        application, [queue, job = std::move(job)]() mutable { dispatch_async(queue, std::move(job)); },
        seconds);
  }
}

void dispatch_wait_for_global_queues() {
  // A job may hand over another one, so this goes on until none is left.
  while (true) {
    std::unique_ptr<QThread> worker;
    {
      const std::lock_guard lock(workersMutex);
      if (workers().empty()) return;
      worker = std::move(workers().back());
      workers().pop_back();
    }
    worker->wait();
    handover::taken();
  }
}
