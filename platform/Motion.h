// The one switch for motion: whether anything on the screen slides, fades or spins.
#pragma once

// True until switched off, unless the desktop asks for reduced motion. With motion off everything that would
// be animated takes its final state at once, with the same reports in the same order. Main thread.
bool motionEnabled();
void setMotionEnabled(bool enabled);
