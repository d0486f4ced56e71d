#include "core/NSLog.h"

#include <syslog.h>

void NSLog(const std::string& line) {
  syslog(LOG_USER | LOG_NOTICE, "%s", line.c_str());
}
