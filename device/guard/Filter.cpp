#include "FilterProgram.h"
#include "core/LauncherContract.h"
#include "device/guard/Contract.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <linux/close_range.h>
#include <linux/filter.h>
#include <linux/landlock.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

bool filterIsOn() {
  return prctl(static_cast<int>(guard::probeOperation), guard::probeArgument, 0, 0, 0) == -1 &&
         errno == guard::probeAnswer;
}

bool putFilterOn() {
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return false;
  const sock_fprog program{sizeof filterProgram / sizeof filterProgram[0],
                           const_cast<sock_filter*>(filterProgram)};
  if (syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, 0UL, &program) != 0) return false;
  return filterIsOn();
}

// As this program knows it; the system's header may be older than the kernel.
struct LandlockRules {
  __u64 files;
  __u64 network;
  __u64 scoped;
};

// Takes from commands what a filter cannot: the application's memory, descriptors and environment under
// /proc, and, where the kernel can (6.12), signals to it. Kernels without Landlock have the application's own
// protection only.
void stepAsideFromTheApplication() {
  constexpr __u64 makeDevice = LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_BLOCK;
  constexpr __u64 moveBetweenFolders = 1ULL << 13;
  constexpr __u64 scopeSignals = 1ULL << 1;
  const long version = syscall(SYS_landlock_create_ruleset, nullptr, 0UL, LANDLOCK_CREATE_RULESET_VERSION);
  if (version < 2) return;  // The first version forbids every move between folders.
  const LandlockRules rules{makeDevice | moveBetweenFolders, 0, version >= 6 ? scopeSignals : 0};
  const unsigned long size = version >= 6 ? sizeof rules : sizeof rules.files;
  const int ruleset = static_cast<int>(syscall(SYS_landlock_create_ruleset, &rules, size, 0UL));
  if (ruleset < 0) return;
  const int root = open("/", O_PATH | O_CLOEXEC);
  landlock_path_beneath_attr everywhere{};
  everywhere.allowed_access = moveBetweenFolders;
  everywhere.parent_fd = root;
  if (syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &everywhere, 0UL) == 0) {
    syscall(SYS_landlock_restrict_self, ruleset, 0UL);
  }
  close(root);
  close(ruleset);
}

bool isForTheInterfaceOnly(const char* variable) {
  for (const char* prefix : {"DISPLAY=", "WAYLAND_DISPLAY=", "XAUTHORITY=", "AT_SPI_BUS_ADDRESS=", "QT_",
                             "DBUS_", "XCURSOR_", "XDG_", "TWEAKBENCH_"}) {
    if (strncmp(variable, prefix, strlen(prefix)) == 0) return true;
  }
  return false;
}

// As the application records it.
const char* theosOfDevice() {
  const char* found = "/opt/theos";
  for (const TheosCandidate& candidate : theosCandidates) {
    if (candidate.exists()) found = candidate.recorded;
  }
  return found;
}

template <typename Kept>
void keepVariables(Kept isKept) {
  char** kept = environ;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    if (isKept(*variable)) *kept++ = *variable;
  }
  *kept = nullptr;
}

// Whatever the host speaks, commands print English and count with decimal points: what they print is searched
// for known messages. Within a build its own settings count.
void setLocale() {
  keepVariables([](const char* variable) {
    return strncmp(variable, "LC_", 3) != 0 && strncmp(variable, "LANGUAGE=", 9) != 0;
  });
  setenv("LANG", "C.UTF-8", 1);
}

void cleanEnvironment() {
  keepVariables([](const char* variable) { return !isForTheInterfaceOnly(variable); });
  // A command's own value is kept, so that a build can choose another Theos. An empty one is of no use to
  // any.
  const char* theos = getenv("THEOS");
  if (theos == nullptr || *theos == '\0') setenv("THEOS", theosOfDevice(), 1);
  const char* home = getenv("HOME");
  if (home != nullptr && strcmp(home, guard::homeOfApplication) == 0)
    setenv("HOME", guard::homeOfCommands, 1);
}

}  // namespace

bool guard::putOn() {
  cleanEnvironment();
  if (filterIsOn()) return true;
  setLocale();
  // The application is on the other side. Within a build descriptors pass on: make hands its job slots down
  // by them.
  syscall(SYS_close_range, 3U, ~0U, CLOSE_RANGE_CLOEXEC);
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0) stepAsideFromTheApplication();
  if (putFilterOn()) return true;
  const int error = errno;
  dprintf(STDERR_FILENO, "sh: refused: the system call filter cannot be put on: %s\n", strerror(error));
  return false;
}
