// stage PLACE: with the launcher and its files copied to PLACE/bin and PLACE/lib, prepares what a build must
// not reach (a home with a secret, a process, the session's sockets, keys, shared memory, a terminal), then
// runs the probe outside and, for each kind of display, as a build in the device. Prints the probe's lines,
// each behind "control|" or "device|".
#include <arpa/inet.h>
#include <array>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <linux/keyctl.h>
#include <map>
#include <mqueue.h>
#include <netinet/in.h>
#include <stdexcept>
#include <string>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Words = std::map<std::string, std::string>;

constexpr int kLeaked = 9;

int must(int result, const char* what) {
  if (result < 0) throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
  return result;
}

void put(const fs::path& file, const std::string& content, mode_t mode) {
  std::ofstream(file) << content;
  must(chmod(file.c_str(), mode), file.c_str());
}

// Nobody needs to answer: connecting is enough.
void listenAt(const std::string& name, int type = SOCK_STREAM) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (name.size() >= sizeof address.sun_path) throw std::runtime_error(name + " is too long");
  std::memcpy(address.sun_path, name.data(), name.size());
  const bool isAbstract = name.starts_with("@");
  if (isAbstract) address.sun_path[0] = '\0';
  const int made = must(socket(AF_UNIX, type, 0), "socket");
  const auto size =
      static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size() + (isAbstract ? 0 : 1));
  must(bind(made, reinterpret_cast<const sockaddr*>(&address), size), name.c_str());
  if (type == SOCK_STREAM) must(listen(made, 100), name.c_str());
}

// On a free port of the loopback; returns its number.
int bindLocally(int made) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  must(bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof address), "bind");
  socklen_t size = sizeof address;
  must(getsockname(made, reinterpret_cast<sockaddr*>(&address), &size), "getsockname");
  return ntohs(address.sin_port);
}

int listenOnPort() {
  const int made = must(socket(AF_INET, SOCK_STREAM, 0), "socket");
  const int port = bindLocally(made);
  must(listen(made, 100), "listen");
  return port;
}

int answerDatagrams() {
  const int made = must(socket(AF_INET, SOCK_DGRAM, 0), "socket");
  const int port = bindLocally(made);
  if (must(fork(), "fork") == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    sockaddr_in caller{};
    char byte = 0;
    while (true) {
      socklen_t size = sizeof caller;
      if (recvfrom(made, &byte, 1, 0, reinterpret_cast<sockaddr*>(&caller), &size) < 0) _exit(1);
      sendto(made, &byte, 1, 0, reinterpret_cast<const sockaddr*>(&caller), size);
    }
  }
  return port;
}

pid_t startVictim(const fs::path& home) {
  const pid_t child = must(fork(), "fork");
  if (child != 0) return child;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (chdir(home.c_str()) != 0) _exit(1);
  std::array<const char*, 3> words{"the-victim", "100000", nullptr};
  std::array<const char*, 2> environment{"TOKEN=the-callers-secret", nullptr};
  execve("/bin/sleep", const_cast<char**>(words.data()), const_cast<char**>(environment.data()));
  _exit(1);
}

void addKeys(const std::string& name) {
  // The session's keyring is this stage's own, the user's is the user's: both without it where the kernel has
  // none.
  syscall(SYS_keyctl, KEYCTL_JOIN_SESSION_KEYRING, nullptr);
  for (long keyring : {KEY_SPEC_SESSION_KEYRING, KEY_SPEC_USER_KEYRING}) {
    syscall(SYS_add_key, "user", name.c_str(), "secret", 6, keyring);
  }
}

class Stage {
 public:
  Stage(const fs::path& place, const fs::path& ownFiles) : number_(std::to_string(getpid())) {
    const fs::path home = place / "home";
    const fs::path session = place / "session";
    fs::create_directories(home);
    for (const char* folder : {"keyring", "gnupg", "pulse"}) fs::create_directories(session / folder);
    chmod(session.c_str(), 0700);
    put(home / "secret", "secret", 0600);
    must(dup2(must(open(home.c_str(), O_RDONLY | O_DIRECTORY), "home"), kLeaked), "dup2");
    words_ = {{"home", home},
              {"authority", home / "authority"},
              {"bus", session / "bus"},
              {"systemBus", session / "system_bus"},
              {"keyring", session / "keyring/control"},
              {"ssh", session / "ssh"},
              {"gpg", session / "gnupg/S.gpg-agent"},
              {"sound", session / "pulse/native"},
              {"wayland", session / "wayland-0"},
              {"abstract", "@tweakbench-stage-" + number_},
              {"x11", "/tmp/.X11-unix/X" + display()},
              {"key", "tweakbench-stage-" + number_},
              {"queue", "/tweakbench-stage-" + number_},
              {"shared", "/dev/shm/tweakbench-stage-" + number_},
              {"usr", "/usr"},
              {"own", place / "own"}};
    put(words_["authority"], "cookie", 0600);
    fs::create_directories(words_["own"]);
    for (const char* service : {"bus", "systemBus", "keyring", "ssh", "gpg", "sound", "wayland", "abstract"})
      listenAt(words_[service]);
    listenAt(words_["letters"] = session / "letters", SOCK_DGRAM);
    fs::create_directories("/tmp/.X11-unix");
    chmod("/tmp/.X11-unix", 01777);
    unlink(words_["x11"].c_str());
    listenAt(words_["x11"]);
    listenAt("@" + words_["x11"]);
    words_["port"] = std::to_string(listenOnPort());
    words_["datagrams"] = std::to_string(answerDatagrams());
    words_["victim"] = std::to_string(startVictim(home));
    addKeys(words_["key"]);
    put(words_["shared"], "secret", 0600);
    words_["segment"] = std::to_string(getpid());
    segment_ = shmget(getpid(), 4096, IPC_CREAT | 0600);
    queue_ = mq_open(words_["queue"].c_str(), O_CREAT | O_RDWR, 0600, nullptr);
    takeTerminal();
    if (geteuid() == 0) addWhatOnlyRootCan(place, ownFiles);
  }
  ~Stage() {
    unlink(words_["x11"].c_str());
    unlink(words_["shared"].c_str());
    if (segment_ >= 0) shmctl(segment_, IPC_RMID, nullptr);
    if (queue_ >= 0) mq_unlink(words_["queue"].c_str());
  }
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  const std::string& operator[](const std::string& name) const { return words_.at(name); }
  const Words& words() const { return words_; }
  std::string display() const { return std::to_string(1000 + getpid() % 30000); }

 private:
  void takeTerminal() {
    const int ours = must(posix_openpt(O_RDWR | O_NOCTTY), "terminal");
    grantpt(ours);
    unlockpt(ours);
    setsid();
    words_["terminal"] = ptsname(ours);
    const int theirs = must(open(words_["terminal"].c_str(), O_RDWR | O_NOCTTY), "terminal");
    must(ioctl(theirs, TIOCSCTTY, 0), "TIOCSCTTY");
    must(dup2(theirs, STDIN_FILENO), "dup2");
    unsigned number = 0;
    must(ioctl(theirs, TIOCGDEV, &number), "TIOCGDEV");
    words_["terminalDevice"] = std::to_string(number);
  }

  void addWhatOnlyRootCan(const fs::path& place, const fs::path& ownFiles) {
    put(words_["others"] = place / "others", "secret", 0600);
    must(chown(words_["others"].c_str(), 34567, 34567), "chown");
    const fs::path program = words_["setuid"] = ownFiles / "tests/setuid";
    fs::copy_file(ownFiles / "tests/probe", program);
    must(chmod(program.c_str(), 04755), "chmod");
  }

  std::string number_;
  Words words_;
  int segment_ = -1;
  mqd_t queue_ = -1;
};

// Prints what the command prints, each line behind `label`; throws where it fails.
void run(const std::string& label, const std::vector<std::string>& command, const Words& environment) {
  int output[2];
  must(pipe(output), "pipe");
  const pid_t child = must(fork(), "fork");
  if (child == 0) {
    dup2(output[1], STDOUT_FILENO);
    close(output[0]);
    close(output[1]);
    for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> words;
    for (const auto& word : command) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    execv(words[0], words.data());
    _exit(127);
  }
  close(output[1]);
  FILE* lines = fdopen(output[0], "r");
  std::array<char, 1024> line;
  while (fgets(line.data(), line.size(), lines) != nullptr) std::cout << label << "|" << line.data();
  fclose(lines);
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
    throw std::runtime_error(label + ": " + command[0] + " ended with " + std::to_string(status));
}

std::vector<std::string> withWords(std::vector<std::string> command, Words words, const Words& changes) {
  for (const auto& [name, value] : changes) words[name] = value;
  for (const auto& [name, value] : words) command.push_back(name + "=" + value);
  return command;
}

void runAll(const fs::path& place) {
  const fs::path launcher = place / "bin/tweakbench";
  const fs::path ownFiles = place / "lib/tweakbench";
  const fs::path probe = ownFiles / "tests/probe";
  const Stage stage(place, ownFiles);
  // Outside, Theos is a copy that the caller may change.
  const fs::path theos = place / "theos";
  fs::copy(ownFiles / "theos", theos, fs::copy_options::recursive);
  const Words caller{{"HOME", stage["home"]},
                     {"XDG_RUNTIME_DIR", place / "session"},
                     {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + stage["bus"]},
                     {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + stage["systemBus"]},
                     {"SSH_AUTH_SOCK", stage["ssh"]},
                     {"XAUTHORITY", stage["authority"]}};
  Words onX11 = caller;
  onX11["DISPLAY"] = ":" + stage.display();
  Words onWayland = caller;
  onWayland["WAYLAND_DISPLAY"] = stage["wayland"];
  onWayland["QT_QPA_PLATFORM"] = "wayland";

  run("control", withWords({probe}, stage.words(), {{"theos", theos}}), onX11);
  const std::vector<std::string> device{
      launcher, "--device",         place / "device", "--theos",
      theos,    "--as-application", "exec",           "/.host/tweakbench/tests/probe"};
  Words inside{{"theos", "/opt/theos"}, {"usr", "/.host/usr"}, {"own", "/.host/tweakbench"}};
  if (geteuid() == 0) inside["setuid"] = "/.host/tweakbench/tests/setuid";
  run("device", withWords(device, stage.words(), inside), onX11);
  Words compositor = inside;
  compositor["wayland"] = "/.host/wayland";
  run("device", withWords(device, stage.words(), compositor), onWayland);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  try {
    runAll(arguments[1]);
    return 0;
  } catch (const std::exception& error) {
    std::cout << "failed|" << error.what() << "\n";
    return 1;
  }
}
