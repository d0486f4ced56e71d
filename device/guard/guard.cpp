// The device's /bin/sh: puts the system call filter on, then becomes bash under the name sh.
//
// Every command line of the application goes through here, and so does everything that a build starts. It
// never runs a command unguarded: where the filter cannot be put on, it ends with status 126.
#include "device/guard/Contract.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace {

constexpr const char* bash = "/.host/usr/bin/bash";

}  // namespace

int main(int count, char** arguments) {
  if (!guard::putOn()) return guard::refused;
  char shell[] = "sh";
  char loginShell[] = "-sh";
  char* none[] = {shell, nullptr};
  char** passed = count > 0 ? arguments : none;
  passed[0] = passed[0][0] == '-' ? loginShell : shell;
  execv(bash, passed);
  const int error = errno;
  dprintf(STDERR_FILENO, "sh: %s: %s\n", bash, strerror(error));
  return error == ENOENT ? 127 : guard::refused;
}
