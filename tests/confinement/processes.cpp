#include "confinement/Attempt.h"

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <linux/kcmp.h>
#include <mqueue.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/shm.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <termios.h>
#include <unistd.h>

namespace {

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The victim's number, or one that no process has where that number is some process of the device.
pid_t victim() {
  constexpr pid_t kNobody = 4194304;
  const std::string commandLine = contentOf(ofVictim("cmdline"));
  const bool isAnother = !commandLine.empty() && commandLine.find("the-victim") == std::string::npos;
  return isAnother ? kNobody : givenNumber("victim");
}

// As the application, the parent is no part of the build, and of the same user.
bool limits(pid_t process) {
  rlimit limit{};
  return prlimit(process, RLIMIT_CPU, nullptr, &limit) == 0 &&
         prlimit(process, RLIMIT_CPU, &limit, nullptr) == 0;
}

bool prioritizes(int which, pid_t process) {
  errno = 0;
  const int priority = getpriority(which, static_cast<id_t>(process));
  return errno == 0 && setpriority(which, static_cast<id_t>(process), priority) == 0;
}

bool isVictimListed() {
  DIR* processes = opendir("/proc");
  if (processes == nullptr) return false;
  bool found = false;
  while (const dirent* entry = readdir(processes)) {
    if (contentOf(std::string("/proc/") + entry->d_name + "/cmdline").starts_with("the-victim")) found = true;
  }
  closedir(processes);
  return found;
}

bool holdsSecret(const std::string& path) {
  return contentOf(path).find("the-callers-secret") != std::string::npos;
}

bool hasVariable(const char* name) {
  return std::getenv(name) != nullptr;
}

// The device's own is no way out.
bool isCallersTerminal(int terminal) {
  unsigned number = 0;
  return ioctl(terminal, TIOCGDEV, &number) == 0 && std::to_string(number) == given("terminalDevice");
}

bool opensCallersTerminal(const char* path) {
  return isCallersTerminal(Descriptor(open(path, O_RDWR | O_NOCTTY)).get());
}

bool typesWith(unsigned long request) {
  char key = 'x';
  return syscall(SYS_ioctl, STDIN_FILENO, request, &key) == 0;
}

bool traces() {
  if (ptrace(PTRACE_SEIZE, victim(), nullptr, nullptr) != 0) return false;
  ptrace(PTRACE_DETACH, victim(), nullptr, nullptr);
  return true;
}

bool readsMemory() {
  char byte = 0;
  const iovec here{&byte, 1};
  const iovec there{reinterpret_cast<void*>(8), 1};
  // The address is no page of its; that this is what is complained of means that the way is open.
  return process_vm_readv(victim(), &here, 1, &there, 1, 0) == 1 || errno == EFAULT;
}

bool setsProcessors(pid_t process) {
  cpu_set_t processors;
  return sched_getaffinity(process, sizeof processors, &processors) == 0 &&
         sched_setaffinity(process, sizeof processors, &processors) == 0;
}

bool takesOpenFile() {
  const Descriptor process(int(syscall(SYS_pidfd_open, victim(), 0)));
  return process && isOpened(int(syscall(SYS_pidfd_getfd, process.get(), 9, 0)));
}

bool entersNamespace() {
  const Descriptor network(open(ofVictim("ns/net").c_str(), O_RDONLY));
  return network && setns(network.get(), 0) == 0;
}

// Whoever opens the file waits until the lease is given back.
bool leasesFile() {
  const char* const path = "/tmp/tweakbench-probe-lease";
  const Descriptor file(open(path, O_RDWR | O_CREAT, 0600));
  unlink(path);
  return fcntl(file.get(), F_SETLEASE, F_WRLCK) == 0;
}

bool setsScheduling() {
  std::array<std::uint32_t, 16> scheduling{};
  return syscall(SYS_sched_getattr, getppid(), scheduling.data(), sizeof scheduling, 0) == 0 &&
         syscall(SYS_sched_setattr, getppid(), scheduling.data(), 0) == 0;
}

bool setsTurnAtTheDisk() {
  constexpr int kOneProcess = 1;
  const long turn = syscall(SYS_ioprio_get, kOneProcess, getppid());
  return turn >= 0 && syscall(SYS_ioprio_set, kOneProcess, getppid(), turn) == 0;
}

bool attachesSegment() {
  const int segment = shmget(static_cast<key_t>(givenNumber("segment")), 0, 0);
  void* const address = segment < 0 ? reinterpret_cast<void*>(-1) : shmat(segment, nullptr, SHM_RDONLY);
  if (address == reinterpret_cast<void*>(-1)) return false;
  shmdt(address);
  return true;
}

}  // namespace

void tryProcesses() {
  promise("The host's processes can be neither seen nor touched");
  attempt("find one in /proc", Everyone, isVictimListed());
  attempt("signal one", Everyone, kill(victim(), 0) == 0);
  attempt("open one by its number", Machine, isOpened(int(syscall(SYS_pidfd_open, victim(), 0))));
  attempt("trace one", Machine, traces());
  attempt("read one's memory", Machine, readsMemory());
  attempt("read one's environment", Machine, holdsSecret(ofVictim("environ")));
  rlimit limit{};
  attempt("read one's limits", Machine, prlimit(victim(), RLIMIT_NOFILE, nullptr, &limit) == 0);
  attempt("change one's priority", Everyone, prioritizes(PRIO_PROCESS, victim()));
  attempt("change one's processors", Everyone, setsProcessors(victim()));
  attempt("compare one with oneself", Machine, syscall(SYS_kcmp, getpid(), victim(), KCMP_VM, 0, 0) >= 0);
  attempt("take one's open file", Machine, takesOpenFile());
  attempt("enter one's namespaces", Root, inChild(entersNamespace));

  promise("A build cannot stop or slow down the application");
  attempt("keep it waiting for a file", Everyone, leasesFile());
  attempt("limit its processor time", Everyone, limits(getppid()));
  attempt("change its priority", Everyone, prioritizes(PRIO_PROCESS, getppid()));
  attempt("change its user's priority", Everyone, prioritizes(PRIO_USER, static_cast<pid_t>(getuid())));
  attempt("change its processors", Everyone, setsProcessors(getppid()));
  const sched_param none{};
  attempt("change its scheduling", Everyone, sched_setscheduler(getppid(), SCHED_OTHER, &none) == 0);
  attempt("change its scheduling by the newer call", Everyone, setsScheduling());
  attempt("change its turn at the disk", Everyone, setsTurnAtTheDisk());
  attempt("have it killed first when memory is short", Everyone,
          canOpen("/proc/self/oom_score_adj", O_WRONLY));

  promise("No memory or queue is shared with the host");
  attempt("attach a shared memory segment", Everyone, attachesSegment());
  attempt("open a message queue", Machine, isOpened(mq_open(given("queue").c_str(), O_RDONLY)));
  attempt("open a shared memory file", Machine, canRead(given("shared")));

  promise("Nothing can be typed into the caller's terminal");
  attempt("type a key", Machine, typesWith(TIOCSTI));
  attempt("type a key with a bit beyond the request", Machine, typesWith(TIOCSTI | 1UL << 32));
  attempt("open the caller's terminal", Everyone, opensCallersTerminal("/dev/tty"));
  attempt("open it by its name", Everyone, canOpen(given("terminal"), O_RDWR | O_NOCTTY));
  attempt("open it as the console", Machine, opensCallersTerminal("/dev/console"));
  attempt("be given it as standard input", Everyone, isCallersTerminal(STDIN_FILENO));
  char foregroundConsole = 12;  // a question, which changes nothing
  attempt("speak to the machine's console", Machine,
          wasReached(ioctl(STDIN_FILENO, TIOCLINUX, &foregroundConsole)));
  attempt("take the terminal for one's own", Everyone,
          isCallersTerminal(STDIN_FILENO) && tcgetsid(STDIN_FILENO) > 0);

  promise("The caller's environment stays outside");
  attempt("in one's own environment", Everyone, hasVariable("CALLERS_TOKEN"));
  attempt("in the environment of another process", Everyone,
          holdsSecret("/proc/1/environ") || holdsSecret("/proc/" + std::to_string(getppid()) + "/environ"));
  attempt("the address of the session's bus", Everyone, hasVariable("DBUS_SESSION_BUS_ADDRESS"));
  attempt("the address of the key agent", Everyone, hasVariable("SSH_AUTH_SOCK"));
  attempt("the name of the display", Everyone, hasVariable("DISPLAY") || hasVariable("WAYLAND_DISPLAY"));
  attempt("the display's cookie", Everyone, hasVariable("XAUTHORITY") || canRead(given("authority")));
}
