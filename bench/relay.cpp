// relay LAUNCHER DEVICE: a gigabyte through exec's standard streams, against a plain pipe in the device, so
// that both include a start. Exit status 0 when each loses at most a tenth.
#include "bench/SideBySide.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace {

double secondsOf(const std::string& line) {
  return seconds([&] {
    if (std::system(line.c_str()) != 0) throw std::runtime_error("cannot run " + line);
  });
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  const std::string device = "'" + std::string(arguments[1]) + "' --device '" + arguments[2] + "' exec ";
  const std::string make = "head -c 1G /dev/zero";
  const auto plain = [&] { return secondsOf(device + "-n sh -c '" + make + " | cat > /dev/null'"); };
  constexpr double allowed = 1.1;
  constexpr int rounds = 11;
  const bool goesOut = compare(
      {"a gigabyte out of exec", "plain pipe", allowed, rounds}, "s",
      [&] { return secondsOf(device + "-n " + make + " | cat > /dev/null"); }, plain);
  const bool comesIn = compare(
      {"a gigabyte into exec", "plain pipe", allowed, rounds}, "s",
      [&] { return secondsOf(make + " | " + device + "cat > /dev/null"); }, plain);
  return goesOut && comesIn ? 0 : 1;
}
