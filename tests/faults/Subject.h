// What script/faults runs while something around it fails. Each function prints one line of what happened and
// returns the exit status. They use the device's fixed paths, so they run in a device only, where not said
// otherwise.
#pragma once

#include <string>

namespace subject {

// A project P that builds, current and listed, with every settings file and the updated Theos in place.
void prepare();

// Every operation with every size of free disk space from none to enough. Prints
// "TRIES FIRED BAD": how often an operation ran, how often the disk was too full for it, and how often
// something was lost by that.
int fillTheDisk();

// `count` names that shells and file systems trip over go through the operations that put names into command
// lines. They aim at the folder `outside`, which the device should not reach, and at one of the device's own.
// Prints "NAMES STRIKES": in how many runs the device's own folder was damaged.
int runNastyNames(int count, const std::string& outside);

}  // namespace subject
