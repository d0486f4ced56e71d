// The event loop: the boundary that exceptions do not cross, queues, delayed calls, and objects kept until
// later.
#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include <QObject>

// Writes the exception that is being handled to the system log. `place` names what was running. Call it from
// a catch block only.
void logCurrentException(const char* place) noexcept;

// Wraps `callable` so that its exceptions are logged and the call returns. Qt's frames cannot be unwound:
// wrap everything that is passed to connect(), a timer or a queue.
template <typename Callable>
auto atEventBoundary(Callable callable) {
  return
      [callable = std::move(callable)]<typename... Arguments>(
          Arguments && ... arguments) mutable -> void requires(std::is_invocable_v<Callable&, Arguments...>) {
    try {
      callable(std::forward<Arguments>(arguments)...);
    } catch (...) {
      logCurrentException("a handler");
    }
  };
}

// Calls `completion`, which may be null, in the same way.
inline void call(const std::function<void()>& completion) {
  if (completion) atEventBoundary(completion)();
}

inline constexpr long DISPATCH_QUEUE_PRIORITY_HIGH = 2;
inline constexpr long DISPATCH_QUEUE_PRIORITY_DEFAULT = 0;

class DispatchQueue;  // compared by address only, never owned
using dispatch_queue_t = const DispatchQueue*;

dispatch_queue_t dispatch_get_main_queue();
// A concurrent queue: its jobs run beside one another. `flags` is always 0. Every other priority counts as
// the default one.
dispatch_queue_t dispatch_get_global_queue(long priority, unsigned long flags);

// Hands `job` over and returns at once. Any thread. What a job throws is written to the system log.
// On the main queue jobs run in the order given, from the event loop of the application object; one that
// comes before there is an application or after it has gone is dropped.
// Where the system refuses a thread, the job of a global queue is not lost: the refusal is logged and the job
// runs on the main queue instead.
void dispatch_async(dispatch_queue_t queue, std::function<void()> job);
// The same, `seconds` from now. Main thread only. With no delay the job still waits for the event loop.
void dispatch_after(double seconds, dispatch_queue_t queue, std::function<void()> job);

// Blocks until every job of the global queues has ended. The application does so before it goes.
void dispatch_wait_for_global_queues();

// Calls `selector` once, `seconds` from now, from the event loop. The call is dropped when `target` is
// destroyed first. Main thread.
void performSelectorAfterDelay(QObject* target, std::function<void()> selector, double seconds);
// Drops every such call for `target` that has not been made yet.
void cancelPreviousPerformRequests(QObject* target);

// Holds `object` until the main event loop runs again, so that an object may drop the last reference to
// itself from within one of its own methods. Without an application the reference is dropped at once.
// Main thread.
void autorelease(std::shared_ptr<void> object);

// Lets go of everything held so far. The application does so before it ends.
void drainAutoreleasePool();
