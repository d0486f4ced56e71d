#include "confinement/Attempt.h"

#include <array>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace {

// The descriptor that is left open on the home.
constexpr int kLeaked = 9;

// A file without a name, which leaves nothing behind.
bool canWriteBelow(const std::string& folder) {
  return canOpen(folder, O_TMPFILE | O_WRONLY);
}

bool canList(const std::string& folder) {
  std::error_code refused;
  std::filesystem::directory_iterator(folder, refused);
  return !refused;
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

bool makesDevice() {
  const std::string node = "/tmp/probe-node-" + std::to_string(getpid());
  return mknod(node.c_str(), S_IFCHR | 0600, makedev(1, 3)) == 0 && unlink(node.c_str()) == 0;
}

// By a copy of this program that belongs to root and asks for root's rights.
bool becomesAnother() {
  constexpr uid_t kOrdinary = 34567;
  if (geteuid() == 0 && setresuid(kOrdinary, kOrdinary, kOrdinary) != 0) return false;
  execl(given("setuid").c_str(), "probe", kAskForRights, nullptr);
  return false;
}

bool opensByHandle() {
  // The handle's own bytes come behind its head.
  alignas(file_handle) std::array<std::byte, sizeof(file_handle) + MAX_HANDLE_SZ> memory{};
  auto* const handle = reinterpret_cast<file_handle*>(memory.data());
  handle->handle_bytes = MAX_HANDLE_SZ;
  int mount = 0;
  if (name_to_handle_at(AT_FDCWD, given("home").c_str(), handle, &mount, 0) != 0) return false;
  const Descriptor home(open(given("home").c_str(), O_RDONLY));
  return isOpened(open_by_handle_at(home ? home.get() : AT_FDCWD, handle, O_RDONLY));
}

bool givesFileAway() {
  char file[] = "/tmp/probe-XXXXXX";
  const Descriptor made(mkstemp(file));
  unlink(file);
  return made && fchown(made.get(), getuid() + 1, getgid()) == 0;
}

}  // namespace

void tryFiles() {
  promise("The user's home is out of reach");
  attempt("read a file by its path", Everyone, canRead(given("home") + "/secret"));
  attempt("make a file in it", Everyone, canWriteBelow(given("home")));
  attempt("list it", Everyone, canList(given("home")));
  attempt("through a symbolic link", Everyone, canReadThroughLink(symlink));
  attempt("through a hard link", Machine, canReadThroughLink(link));
  attempt("through a descriptor that was left open", Everyone, isOpened(openat(kLeaked, "secret", O_RDONLY)));
  attempt("through the root of another process", Machine,
          canRead(ofVictim("root") + given("home") + "/secret"));
  attempt("through the working folder of another process", Machine, canRead(ofVictim("cwd/secret")));
  attempt("through an open file of another process", Machine, canRead(ofVictim("fd/9/secret")));
  attempt("through the root of the first process", Machine,
          canRead("/proc/1/root" + given("home") + "/secret"));
  attempt("through a file handle", Root, opensByHandle());

  promise("Other people's files are out of reach");
  attempt("read /etc/shadow", Root, canRead("/etc/shadow"));
  attempt("list the machine's private keys", Machine, canList("/etc/ssl/private"));
  attempt("list /root", Root, canList("/root"));
  attempt("write below /root", Root, canWriteBelow("/root"));
  attempt("read another user's file", Root, canRead(given("others")));
  attempt("write another user's file", Root, canOpen(given("others"), O_WRONLY));

  promise("The host's system cannot be changed");
  attempt("write below /usr", Root, canWriteBelow("/usr"));
  attempt("write below /usr by another name", Root, canWriteBelow(given("usr")));
  attempt("write below /etc", Root, canWriteBelow("/etc"));
  attempt("write below Theos", Everyone, canWriteBelow(given("theos")));
  attempt("replace the shell", Root, canWriteBelow("/bin") || canOpen("/bin/sh", O_WRONLY));
  attempt("change Tweakbench's own files", Everyone, canWriteBelow(given("own")));
  attempt("write the pattern for core dumps", Root, canOpen("/proc/sys/kernel/core_pattern", O_WRONLY));
  attempt("write the host's name", Root, canOpen("/proc/sys/kernel/hostname", O_WRONLY));
  attempt("press the system request key", Machine, canOpen("/proc/sysrq-trigger", O_WRONLY));
  attempt("look at the machine's devices", Everyone, canList("/sys"));
  attempt("read the machine's memory", Machine,
          canOpen("/dev/mem", O_RDONLY) || canOpen("/proc/kcore", O_RDONLY));
  attempt("read the kernel's messages", Machine, canOpen("/dev/kmsg", O_RDONLY | O_NONBLOCK));

  promise("No rights can be gained");
  attempt("run a program that changes its user", Root, inChild(becomesAnother));
  attempt("make a device node", Root, makesDevice());
  attempt("become root", Root, inChild([] { return setresuid(0, 0, 0) == 0; }));
  attempt("change a file's owner", Root, givesFileAway());
}
