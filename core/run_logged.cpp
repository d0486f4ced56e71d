#include "core/run_logged.h"

#include "core/FileManager.h"
#include "core/run_cmd.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

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

bool discardLog(const std::string& log) {
  removeItemAtPath(log);
  struct stat left {};
  if (lstat(log.c_str(), &left) != 0) return true;
  const Descriptor file(open(log.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  return file && ftruncate(file.get(), 0) == 0;
}

MaybeText run_logged(const std::string& cmd, const std::string& log) {
  const bool isNew = discardLog(log);
  redirectStandardStreams(log);
  run_cmd(cmd.c_str());
  return isNew ? stringWithContentsOfFile(log) : std::nullopt;
}
