// Keeps an object alive until control is back in the event loop.
#pragma once

#include <memory>

// Holds `object` until the main event loop runs again, so that an object may drop the last reference to
// itself from within one of its own methods. Without an application the reference is dropped at once.
// Main thread.
void autorelease(std::shared_ptr<void> object);

// Lets go of everything held so far. The application does so before it ends.
void drainAutoreleasePool();
