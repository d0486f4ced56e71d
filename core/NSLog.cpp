#include "core/NSLog.h"

#include "core/Text.h"

#include <syslog.h>

void NSLog(const std::string& line) {
  std::size_t length = line.size();
  if (length > longestLogLine) {
    length = longestLogLine;
    while (length > 0 && !startsCharacter(line[length])) --length;
  }
  syslog(LOG_USER | LOG_NOTICE, "%.*s", static_cast<int>(length), line.c_str());
}
