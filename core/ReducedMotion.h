// How the launcher tells the application that the desktop asks for reduced motion.
#pragma once

// An environment variable, set to anything. The guard takes it away from commands.
inline constexpr const char* reducedMotionVariable = "TWEAKBENCH_REDUCED_MOTION";
