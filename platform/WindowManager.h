// What X11's window manager learns beside what Qt tells it. On other displays nothing happens.
#pragma once

#include <QWidget>

// Shows the window in front, and its desktop. A window manager need not follow an application's own wish, and
// does not where the window is on another desktop or the user was last elsewhere, but follows a panel's.
void activateAsPanel(WId window);

// Removes the names of the host and of the process in the device from the window: they mean nothing outside,
// but are shown in titles, and a window manager would kill by them. Call it before the window is shown.
void forgetHostOf(WId window);
