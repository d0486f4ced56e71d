#include "platform/EventLoop.h"

#include "core/Process.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <mutex>
#include <string>
#include <vector>

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#if defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#endif

// Tells ThreadSanitizer what one thread hands to another through Qt, whose locks it does not see. All jobs
// share one variable, so a race between two jobs may hide behind a third. Costs nothing in other builds.
namespace handover {

#if defined(__SANITIZE_THREAD__)
inline char between;
// What this thread has done is visible to another after its taken().
inline void given() {
  __tsan_release(&between);
}
inline void taken() {
  __tsan_acquire(&between);
}
#else
inline void given() {}
inline void taken() {}
#endif

}  // namespace handover

void logCurrentException(const char* place) noexcept {
  try {
    const std::string before = std::string("Uncaught exception in ") + place + ": ";
    try {
      throw;
    } catch (const std::exception& error) {
      NSLog(before + error.what());
    } catch (...) {
      NSLog(before + "of an unknown type");
    }
  } catch (...) {
    // Not even the line could be written; there is nowhere left to say so.
  }
}

class DispatchQueue {
 public:
  QThread::Priority priority = QThread::InheritPriority;
};

namespace {

const QString delayedCall = QStringLiteral("delayed call");

std::vector<std::shared_ptr<void>> pool;

std::mutex workersMutex;
std::vector<std::unique_ptr<QThread>> workers;

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
  // The only sign of a refused thread: neither a signal nor an exception comes.
  if (worker->isRunning() || worker->isFinished()) {
    const std::lock_guard lock(workersMutex);
    std::erase_if(workers, [](const auto& thread) { return thread->isFinished() && thread->wait(); });
    workers.push_back(std::move(worker));
    return;
  }
  NSLog("No thread could be started for a queued job; it runs on the main thread.");
  runOnMainQueue(std::move(*kept));
}

}  // namespace

dispatch_queue_t dispatch_get_main_queue() {
  static const DispatchQueue queue;
  return &queue;
}

dispatch_queue_t dispatch_get_global_queue(long priority, unsigned long /*flags*/) {
  static const DispatchQueue high{QThread::HighPriority};
  static const DispatchQueue usual{QThread::NormalPriority};
  return priority == DISPATCH_QUEUE_PRIORITY_HIGH ? &high : &usual;
}

void dispatch_async(dispatch_queue_t queue, std::function<void()> job) {
  if (queue == dispatch_get_main_queue()) {
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
      if (workers.empty()) return;
      worker = std::move(workers.back());
      workers.pop_back();
    }
    worker->wait();
    handover::taken();
  }
}

void performSelectorAfterDelay(QObject* target, std::function<void()> selector, double seconds) {
  auto* const call = new QObject(target);
  call->setObjectName(delayedCall);
  const auto delay = std::chrono::milliseconds(std::lround(std::max(seconds, 0.0) * 1000.0));
  QTimer::singleShot(delay, Qt::PreciseTimer, call,
                     atEventBoundary([call, selector = std::move(selector)]() mutable {
                       // The selector may destroy the target, and the call with it.
                       const std::function<void()> made = std::move(selector);
                       call->deleteLater();
                       made();
                     }));
}

void cancelPreviousPerformRequests(QObject* target) {
  qDeleteAll(target->findChildren<QObject*>(delayedCall, Qt::FindDirectChildrenOnly));
}

void autorelease(std::shared_ptr<void> object) {
  if (!object || !QCoreApplication::instance()) return;
  pool.push_back(std::move(object));
  // The event itself holds no object: an application drops the events left at its end under a lock that the
  // objects would need to be destroyed.
  QMetaObject::invokeMethod(QCoreApplication::instance(), drainAutoreleasePool, Qt::QueuedConnection);
}

void drainAutoreleasePool() {
  // What goes may leave more to be released.
  while (!pool.empty()) {
    const std::vector<std::shared_ptr<void>> going = std::exchange(pool, {});
  }
}
