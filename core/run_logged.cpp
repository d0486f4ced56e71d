#include "core/run_logged.h"

#include "core/FileManager.h"
#include "core/run_cmd.h"

#include <cstdio>

namespace {

void reopen(const std::string& log, FILE* stream) {
  if (std::freopen(log.c_str(), "a+", stream) != nullptr) return;
  // A log that cannot be opened leaves the stream closed, and the run reads back as empty. The descriptor
  // must not stay free: the next file that the process opens would get its number, and commands would print
  // into that file.
  if (std::freopen("/dev/null", "a+", stream) == nullptr) return;
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
