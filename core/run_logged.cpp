#include "core/run_logged.h"

#include <cstdio>

#include "core/FileManager.h"
#include "core/run_cmd.h"

namespace {

void reopen(const std::string& log, FILE* stream) {
  // A log that cannot be opened leaves the stream as freopen leaves it; the run then reads back as empty.
  if (std::freopen(log.c_str(), "a+", stream) == nullptr) return;
}

}  // namespace

void redirectStandardStreams(const std::string& log) {
  reopen(log, stdout);
  reopen(log, stderr);
  reopen(log, stdin);
}

MaybeText run_logged(const std::string& cmd, const std::string& log) {
  removeItemAtPath(log);
  redirectStandardStreams(log);
  run_cmd(cmd.c_str());
  return stringWithContentsOfFile(log);
}
