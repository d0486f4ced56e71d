// Measuring two ways of doing the same thing in turns, so that whatever else the machine does slows both
// alike.
#pragma once

#include <functional>
#include <string>

struct Comparison {
  std::string ours;
  std::string yardstick;
  double allowedRatio;  // ours to yardstick, in medians
  int rounds;
};

// Runs both `comparison.rounds` times in turns and prints medians and their ratio. False when the ratio is
// larger than allowed. Both functions return what is compared: seconds, or bytes.
bool compare(const Comparison& comparison, const char* unit, const std::function<double()>& ours,
             const std::function<double()>& yardstick);

// The seconds that `work` takes.
double seconds(const std::function<void()>& work);
