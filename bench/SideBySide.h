// Measuring two ways of doing the same thing in turns, so that whatever else the machine does slows both
// alike.
#pragma once

#include <functional>
#include <string>

struct Comparison {
  std::string ours;
  std::string yardstick;
  double allowedRatio;  // ours to yardstick, in the median of the pairs
  int rounds;
};

// Runs both `comparison.rounds` times in turns and prints the medians of both, and the median of the ratios
// of neighbouring runs, in which a noisy minute counts on both sides. False when that is larger than allowed.
// Both functions return what is compared: seconds, or bytes.
bool compare(const Comparison& comparison, const char* unit, const std::function<double()>& ours,
             const std::function<double()>& yardstick);

// The seconds that `work` takes.
double seconds(const std::function<void()>& work);
