// Queues of work: the main queue is the event loop, the global queues are worker threads.
#pragma once

#include <functional>

inline constexpr long DISPATCH_QUEUE_PRIORITY_HIGH = 2;
inline constexpr long DISPATCH_QUEUE_PRIORITY_DEFAULT = 0;
inline constexpr long DISPATCH_QUEUE_PRIORITY_LOW = -2;

class DispatchQueue;  // compared by address only, never owned
using dispatch_queue_t = const DispatchQueue*;

dispatch_queue_t dispatch_get_main_queue();
// A concurrent queue: its jobs run beside one another. `flags` is always 0. An unknown priority counts as the
// default one.
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
