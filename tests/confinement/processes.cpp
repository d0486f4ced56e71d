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

using Control = Attempt::Control;

constexpr const char* kProcesses = "The host's processes can be neither seen nor touched";
constexpr const char* kApplication = "A build cannot stop or slow down the application";
constexpr const char* kMemory = "No memory or queue is shared with the host";
constexpr const char* kTerminal = "Nothing can be typed into the caller's terminal";
constexpr const char* kSecrets = "The caller's environment stays outside";

constexpr char kForegroundConsole = 12;  // of TIOCLINUX: asks, and changes nothing

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

bool typesWith(unsigned long request) {
  char key = 'x';
  return syscall(SYS_ioctl, STDIN_FILENO, request, &key) == 0;
}

}  // namespace

std::vector<Attempt> attemptsOnProcesses() {
  return {
      {kProcesses, "find one in /proc", Control::Everyone, isVictimListed},
      {kProcesses, "signal one", Control::Everyone, [] { return kill(victim(), 0) == 0; }},
      {kProcesses, "open one by its number", Control::Machine,
       [] { return opened(static_cast<int>(syscall(SYS_pidfd_open, victim(), 0))); }},
      {kProcesses, "trace one", Control::Machine,
       [] {
         if (ptrace(PTRACE_SEIZE, victim(), nullptr, nullptr) != 0) return false;
         ptrace(PTRACE_DETACH, victim(), nullptr, nullptr);
         return true;
       }},
      {kProcesses, "read one's memory", Control::Machine,
       [] {
         char byte = 0;
         const iovec here{&byte, 1};
         const iovec there{reinterpret_cast<void*>(8), 1};
         // The address is no page of its; that this is what is complained of means that the way is open.
         return process_vm_readv(victim(), &here, 1, &there, 1, 0) == 1 || errno == EFAULT;
       }},
      {kProcesses, "read one's environment", Control::Machine,
       [] { return holdsSecret(ofVictim("environ")); }},
      {kProcesses, "read one's limits", Control::Machine,
       [] {
         rlimit limit{};
         return prlimit(victim(), RLIMIT_NOFILE, nullptr, &limit) == 0;
       }},
      {kProcesses, "change one's priority", Control::Everyone,
       [] { return prioritizes(PRIO_PROCESS, victim()); }},
      {kProcesses, "change one's processors", Control::Everyone,
       [] {
         cpu_set_t processors;
         return sched_getaffinity(victim(), sizeof processors, &processors) == 0 &&
                sched_setaffinity(victim(), sizeof processors, &processors) == 0;
       }},
      {kProcesses, "compare one with oneself", Control::Machine,
       [] { return syscall(SYS_kcmp, getpid(), victim(), KCMP_VM, 0, 0) >= 0; }},
      {kProcesses, "take one's open file", Control::Machine,
       [] {
         const int process = static_cast<int>(syscall(SYS_pidfd_open, victim(), 0));
         if (process < 0) return false;
         const bool through = opened(static_cast<int>(syscall(SYS_pidfd_getfd, process, 9, 0)));
         close(process);
         return through;
       }},
      {kProcesses, "enter one's namespaces", Control::Root,
       [] {
         return inChild([] {
           const int network = open(ofVictim("ns/net").c_str(), O_RDONLY);
           return network >= 0 && setns(network, 0) == 0;
         });
       }},
      {kApplication, "keep it waiting for a file", Control::Everyone,
       [] {
         // Whoever opens the file waits until the lease is given back.
         const int file = open("/tmp/tweakbench-probe-lease", O_RDWR | O_CREAT, 0600);
         const bool through = fcntl(file, F_SETLEASE, F_WRLCK) == 0;
         const int error = errno;
         close(file);
         unlink("/tmp/tweakbench-probe-lease");
         errno = error;
         return through;
       }},
      {kApplication, "limit its processor time", Control::Everyone, [] { return limits(getppid()); }},
      {kApplication, "change its priority", Control::Everyone,
       [] { return prioritizes(PRIO_PROCESS, getppid()); }},
      {kApplication, "change its user's priority", Control::Everyone,
       [] { return prioritizes(PRIO_USER, static_cast<pid_t>(getuid())); }},
      {kApplication, "change its processors", Control::Everyone,
       [] {
         cpu_set_t processors;
         return sched_getaffinity(getppid(), sizeof processors, &processors) == 0 &&
                sched_setaffinity(getppid(), sizeof processors, &processors) == 0;
       }},
      {kApplication, "change its scheduling", Control::Everyone,
       [] {
         const sched_param none{};
         return sched_setscheduler(getppid(), SCHED_OTHER, &none) == 0;
       }},
      {kApplication, "change its scheduling by the newer call", Control::Everyone,
       [] {
         std::array<std::uint32_t, 16> scheduling{};
         return syscall(SYS_sched_getattr, getppid(), scheduling.data(), sizeof scheduling, 0) == 0 &&
                syscall(SYS_sched_setattr, getppid(), scheduling.data(), 0) == 0;
       }},
      {kApplication, "change its turn at the disk", Control::Everyone,
       [] {
         constexpr int kOneProcess = 1;
         const long turn = syscall(SYS_ioprio_get, kOneProcess, getppid());
         return turn >= 0 && syscall(SYS_ioprio_set, kOneProcess, getppid(), turn) == 0;
       }},
      {kApplication, "have it killed first when memory is short", Control::Everyone,
       [] { return opened(open("/proc/self/oom_score_adj", O_WRONLY)); }},
      {kMemory, "attach a shared memory segment", Control::Everyone,
       [] {
         const int segment = shmget(static_cast<key_t>(givenNumber("segment")), 0, 0);
         void* const address =
             segment < 0 ? reinterpret_cast<void*>(-1) : shmat(segment, nullptr, SHM_RDONLY);
         if (address == reinterpret_cast<void*>(-1)) return false;
         shmdt(address);
         return true;
       }},
      {kMemory, "open a message queue", Control::Machine,
       [] {
         const mqd_t queue = mq_open(given("queue").c_str(), O_RDONLY);
         if (queue < 0) return false;
         mq_close(queue);
         return true;
       }},
      {kMemory, "open a shared memory file", Control::Machine, [] { return canRead(given("shared")); }},
      {kTerminal, "type a key", Control::Machine, [] { return typesWith(TIOCSTI); }},
      {kTerminal, "type a key with a bit beyond the request", Control::Machine,
       [] { return typesWith(TIOCSTI | 1UL << 32); }},
      {kTerminal, "open the caller's terminal", Control::Everyone,
       [] {
         const int terminal = open("/dev/tty", O_RDWR | O_NOCTTY);
         const bool through = isCallersTerminal(terminal);
         if (terminal >= 0) close(terminal);
         return through;
       }},
      {kTerminal, "open it by its name", Control::Everyone,
       [] { return opened(open(given("terminal").c_str(), O_RDWR | O_NOCTTY)); }},
      {kTerminal, "open it as the console", Control::Machine,
       [] {
         const int terminal = open("/dev/console", O_RDWR | O_NOCTTY);
         const bool through = isCallersTerminal(terminal);
         if (terminal >= 0) close(terminal);
         return through;
       }},
      {kTerminal, "be given it as standard input", Control::Everyone,
       [] { return isCallersTerminal(STDIN_FILENO); }},
      {kTerminal, "speak to the machine's console", Control::Machine,
       [] {
         char question = kForegroundConsole;
         return wasReached(ioctl(STDIN_FILENO, TIOCLINUX, &question));
       }},
      {kTerminal, "take the terminal for one's own", Control::Everyone,
       [] { return isCallersTerminal(STDIN_FILENO) && tcgetsid(STDIN_FILENO) > 0; }},
      {kSecrets, "in one's own environment", Control::Everyone, [] { return hasVariable("CALLERS_TOKEN"); }},
      {kSecrets, "in the environment of another process", Control::Everyone,
       [] {
         return holdsSecret("/proc/1/environ") ||
                holdsSecret("/proc/" + std::to_string(getppid()) + "/environ");
       }},
      {kSecrets, "the address of the session's bus", Control::Everyone,
       [] { return hasVariable("DBUS_SESSION_BUS_ADDRESS"); }},
      {kSecrets, "the address of the key agent", Control::Everyone,
       [] { return hasVariable("SSH_AUTH_SOCK"); }},
      {kSecrets, "the name of the display", Control::Everyone,
       [] { return hasVariable("DISPLAY") || hasVariable("WAYLAND_DISPLAY"); }},
      {kSecrets, "the display's cookie", Control::Everyone,
       [] { return hasVariable("XAUTHORITY") || canRead(given("authority")); }},
  };
}
