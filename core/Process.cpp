#include "core/Process.h"

#include "core/Text.h"

#include <csignal>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <syslog.h>
#include <unistd.h>

void NSLog(const std::string& line) {
  std::size_t length = line.size();
  if (length > longestLogLine) {
    length = longestLogLine;
    while (length > 0 && !startsCharacter(line[length])) --length;
  }
  syslog(LOG_USER | LOG_NOTICE, "%.*s", static_cast<int>(length), line.c_str());
}

void surviveRefusedWrites() {
  for (const int number : {SIGPIPE, SIGXFSZ}) {
    struct sigaction action {};
    // A handler and not SIG_IGN, which commands would inherit.
    action.sa_handler = [](int) {};
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
  }
}

namespace {
// The library's own name for "entitle as a platform application".
constexpr int platformFlag = 2;
}  // namespace

const char* platformize_me(const char* library) {
  // The library stays loaded: its result may point into it.
  void* const handle = dlopen(library, RTLD_LAZY);
  if (handle == nullptr) return nullptr;
  dlerror();
  using EntitleNow = const char* (*)(pid_t, int);
  const auto entitleNow = reinterpret_cast<EntitleNow>(dlsym(handle, "jb_oneshot_entitle_now"));
  if (const char* const error = dlerror()) return error;
  return entitleNow(getpid(), platformFlag);
}

bool takeLauncherSocket(int descriptor) {
  int domain = 0;
  int type = 0;
  socklen_t size = sizeof(int);
  return getsockopt(descriptor, SOL_SOCKET, SO_DOMAIN, &domain, &size) == 0 && domain == AF_UNIX &&
         getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_SEQPACKET &&
         fcntl(descriptor, F_SETFD, FD_CLOEXEC) == 0;
}
