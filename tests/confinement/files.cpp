#include "confinement/Attempt.h"

#include <array>
#include <cstddef>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Control = Attempt::Control;

constexpr const char* kHome = "The user's home is out of reach";
constexpr const char* kOthers = "Other people's files are out of reach";
constexpr const char* kSystem = "The host's system cannot be changed";
constexpr const char* kRights = "No rights can be gained";

// The descriptor that the stage leaves open on the home.
constexpr int kLeaked = 9;

// A file without a name, which leaves nothing behind.
bool canWriteBelow(const std::string& folder) {
  return !folder.empty() && opened(open(folder.c_str(), O_TMPFILE | O_WRONLY, 0600));
}

bool canList(const char* folder) {
  DIR* listing = opendir(folder);
  if (listing == nullptr) return false;
  closedir(listing);
  return true;
}

bool canReadThroughLink(int (*make)(const char*, const char*)) {
  char folder[] = "/tmp/probe-XXXXXX";
  if (mkdtemp(folder) == nullptr) return false;
  const std::string link = std::string(folder) + "/link";
  const bool through = make((given("home") + "/secret").c_str(), link.c_str()) == 0 && canRead(link);
  unlink(link.c_str());
  rmdir(folder);
  return through;
}

bool canMakeDevice() {
  const std::string node = "/tmp/probe-node-" + std::to_string(getpid());
  if (mknod(node.c_str(), S_IFCHR | 0600, makedev(1, 3)) != 0) return false;
  unlink(node.c_str());
  return true;
}

// By a copy of this program that belongs to root and asks for root's rights.
bool becomesAnother() {
  return !given("setuid").empty() && inChild([] {
    constexpr uid_t kOrdinary = 34567;
    if (geteuid() == 0 && setresuid(kOrdinary, kOrdinary, kOrdinary) != 0) return false;
    const pid_t child = fork();
    if (child == 0) {
      execl(given("setuid").c_str(), "probe", kAskForRights, nullptr);
      _exit(1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
  });
}

}  // namespace

std::vector<Attempt> attemptsOnFiles() {
  return {
      {kHome, "read a file by its path", Control::Everyone,
       [] { return canRead(given("home") + "/secret"); }},
      {kHome, "make a file in it", Control::Everyone, [] { return canWriteBelow(given("home")); }},
      {kHome, "list it", Control::Everyone, [] { return canList(given("home").c_str()); }},
      {kHome, "through a symbolic link", Control::Everyone, [] { return canReadThroughLink(symlink); }},
      {kHome, "through a hard link", Control::Machine, [] { return canReadThroughLink(link); }},
      {kHome, "through a descriptor that was left open", Control::Everyone,
       [] { return opened(openat(kLeaked, "secret", O_RDONLY)); }},
      {kHome, "through the root of another process", Control::Machine,
       [] { return canRead(ofVictim("root") + given("home") + "/secret"); }},
      {kHome, "through the working folder of another process", Control::Machine,
       [] { return canRead(ofVictim("cwd/secret")); }},
      {kHome, "through an open file of another process", Control::Machine,
       [] { return canRead(ofVictim("fd/9/secret")); }},
      {kHome, "through the root of the first process", Control::Machine,
       [] { return canRead("/proc/1/root" + given("home") + "/secret"); }},
      {kHome, "through a file handle", Control::Root,
       [] {
         // The handle's own bytes come behind its head.
         alignas(file_handle) std::array<std::byte, sizeof(file_handle) + MAX_HANDLE_SZ> memory{};
         auto* const handle = reinterpret_cast<file_handle*>(memory.data());
         handle->handle_bytes = MAX_HANDLE_SZ;
         int mount = 0;
         if (name_to_handle_at(AT_FDCWD, given("home").c_str(), handle, &mount, 0) != 0) return false;
         const int home = open(given("home").c_str(), O_RDONLY);
         const bool through = opened(open_by_handle_at(home < 0 ? AT_FDCWD : home, handle, O_RDONLY));
         close(home);
         return through;
       }},
      {kOthers, "read /etc/shadow", Control::Root, [] { return canRead("/etc/shadow"); }},
      {kOthers, "list the machine's private keys", Control::Machine,
       [] { return canList("/etc/ssl/private"); }},
      {kOthers, "list /root", Control::Root, [] { return canList("/root"); }},
      {kOthers, "write below /root", Control::Root, [] { return canWriteBelow("/root"); }},
      {kOthers, "read another user's file", Control::Root, [] { return canRead(given("others")); }},
      {kOthers, "write another user's file", Control::Root,
       [] { return opened(open(given("others").c_str(), O_WRONLY)); }},
      {kSystem, "write below /usr", Control::Root, [] { return canWriteBelow("/usr"); }},
      {kSystem, "write below /usr by another name", Control::Root,
       [] { return canWriteBelow(given("usr")); }},
      {kSystem, "write below /etc", Control::Root, [] { return canWriteBelow("/etc"); }},
      {kSystem, "write below Theos", Control::Everyone, [] { return canWriteBelow(given("theos")); }},
      {kSystem, "replace the shell", Control::Root,
       [] { return canWriteBelow("/bin") || opened(open("/bin/sh", O_WRONLY)); }},
      {kSystem, "change Tweakbench's own files", Control::Everyone,
       [] { return canWriteBelow(given("own")); }},
      {kSystem, "write the pattern for core dumps", Control::Root,
       [] { return opened(open("/proc/sys/kernel/core_pattern", O_WRONLY)); }},
      {kSystem, "write the host's name", Control::Root,
       [] { return opened(open("/proc/sys/kernel/hostname", O_WRONLY)); }},
      {kSystem, "press the system request key", Control::Machine,
       [] { return opened(open("/proc/sysrq-trigger", O_WRONLY)); }},
      {kSystem, "look at the machine's devices", Control::Everyone, [] { return canList("/sys"); }},
      {kSystem, "read the machine's memory", Control::Machine,
       [] { return opened(open("/dev/mem", O_RDONLY)) || opened(open("/proc/kcore", O_RDONLY)); }},
      {kSystem, "read the kernel's messages", Control::Machine,
       [] { return opened(open("/dev/kmsg", O_RDONLY | O_NONBLOCK)); }},
      {kRights, "run a program that changes its user", Control::Root, becomesAnother},
      {kRights, "make a device node", Control::Root, canMakeDevice},
      {kRights, "become root", Control::Root, [] { return inChild([] { return setresuid(0, 0, 0) == 0; }); }},
      {kRights, "change a file's owner", Control::Root,
       [] {
         char file[] = "/tmp/probe-XXXXXX";
         const int made = mkstemp(file);
         const bool through = made >= 0 && fchown(made, getuid() + 1, getgid()) == 0;
         close(made);
         unlink(file);
         return through;
       }},
  };
}
