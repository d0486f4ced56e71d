#include "bench/SideBySide.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace {

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

bool compare(const Comparison& comparison, const char* unit, const std::function<double()>& ours,
             const std::function<double()>& yardstick) {
  std::vector<double> mine;
  std::vector<double> theirs;
  std::vector<double> ratios;
  ours();
  yardstick();
  for (int round = 0; round < comparison.rounds; ++round) {
    mine.push_back(ours());
    theirs.push_back(yardstick());
    ratios.push_back(mine.back() / theirs.back());
  }
  const double ratio = median(ratios);
  const bool holds = ratio <= comparison.allowedRatio;
  std::printf("%-34s %9.3f %-3s  %-34s %9.3f %-3s  ratio %.3f, at most %.2f: %s\n", comparison.ours.c_str(),
              median(mine), unit, comparison.yardstick.c_str(), median(theirs), unit, ratio,
              comparison.allowedRatio, holds ? "holds" : "MISSED");
  std::fflush(stdout);
  return holds;
}

double seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}
