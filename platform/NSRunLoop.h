// Calls that are made later, on the main thread.
#pragma once

#include <functional>

#include <QObject>

// Calls `selector` once, `seconds` from now, from the event loop. The call is dropped when `target` is
// destroyed first. Main thread.
void performSelectorAfterDelay(QObject* target, std::function<void()> selector, double seconds);
// Drops every such call for `target` that has not been made yet.
void cancelPreviousPerformRequests(QObject* target);
