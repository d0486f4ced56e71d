#include "support/SystemLog.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <utility>

namespace {

std::mutex logMutex;
std::vector<std::string> loggedLines;

void keep(const char* format, va_list arguments) {
  char line[1024];
  std::vsnprintf(line, sizeof line, format, arguments);
  const std::lock_guard lock(logMutex);
  loggedLines.emplace_back(line);
}

}  // namespace

// The program's own definitions come before the C library's; the second one is what fortified calls become.
extern "C" {

void syslog(int /*priority*/, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  keep(format, arguments);
  va_end(arguments);
}

void __syslog_chk(int /*priority*/, int /*flag*/, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  keep(format, arguments);
  va_end(arguments);
}
}

std::vector<std::string> systemlog::take() {
  const std::lock_guard lock(logMutex);
  return std::exchange(loggedLines, {});
}
