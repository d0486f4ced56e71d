#include "device/Process.h"
#include "device/Visible.h"
#include "device/folder/Beneath.h"
#include "device/folder/Packages.h"
#include "device/transfer/Transfer.h"

#include <algorithm>
#include <fcntl.h>
#include <iostream>
#include <random>
#include <sstream>

namespace {

constexpr std::size_t longestLog = 1 << 16;
// ssh's own failures; the others are the remote command's.
constexpr int sshFailed = 255;

// Why a package is not on the phone, or not installed.
struct NotSent {
  SendStatus status;
  std::string sentence;
};

// One connection that ssh and scp share, so that a password is asked for once. It ends with the object.
class Connection {
 public:
  Connection(const Phone& phone, const Environment& caller)
      : phone_(phone), ssh_(findProgram(caller, "ssh")), scp_(findProgram(caller, "scp")) {
    if (ssh_.empty() || scp_.empty())
      throw Refusal("ssh and scp are not installed; install them with \"apt install openssh-client\".");
    // Short, for the name of a socket.
    char folder[] = "/tmp/tweakbench-send-XXXXXX";
    if (mkdtemp(folder) == nullptr) refuseWithError("No folder could be made for the connection:");
    folder_ = folder;
  }
  ~Connection() {
    try {
      if (fs::exists(folder_ / "socket"))
        run(ssh_, {"-O", "exit", "--", phone_.host}, nothing_.get(), nothing_.get());
    } catch (const std::exception&) {
    } catch (const Interrupted&) {
    }
    std::error_code error;
    fs::remove_all(folder_, error);
  }

  // Throws NotSent.
  void establish() const {
    // In the background it must not hold the caller's streams; what it has to say goes to a file.
    const int status = run(ssh_,
                           {"-M", "-N", "-f", "-E", (folder_ / "log").string(), "-o", "ControlPersist=60",
                            "-o", "ConnectTimeout=15", "-o", "ClearAllForwardings=yes", "--", phone_.host},
                           nothing_.get(), nothing_.get());
    if (status == 0) return;
    const Descriptor folder(::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // ssh ends its lines with a carriage return.
    const std::string log =
        visible(replaceAll(readBeneath(folder.get(), "log", longestLog).value_or(""), "\r", ""), "\n\t");
    std::cerr << log;
    if (hasAny(log, {"Host key verification failed", "IDENTIFICATION HAS CHANGED"})) {
      throw NotSent{LoginRefused, "The key of " + phone_.host +
                                      " is not known or has changed; connect to it once with ssh and see "
                                      "whether it is your phone."};
    }
    if (hasAny(log, {"Permission denied", "Too many authentication"})) {
      throw NotSent{LoginRefused, phone_.host + " refused the login of " + phone_.user +
                                      "; see whether \"ssh " + phone_.user + "@" + phone_.host + "\" works."};
    }
    throw NotSent{Unreachable, phone_.host +
                                   " cannot be reached; see whether the phone is awake, in this "
                                   "network, and runs OpenSSH."};
  }

  // By the old protocol of scp, since phones often have an SSH server without sftp.
  int copy(const Descriptor& package, const std::string& target) const {
    const bool isAddress = phone_.host.find(':') != std::string::npos;
    return run(scp_,
               {"-O", "--", pathOf(package.get()),
                (isAddress ? "[" + phone_.host + "]:" : phone_.host + ":") + target},
               STDERR_FILENO, STDERR_FILENO, {package.get()});
  }

  int command(const std::string& line, bool onTerminal) const {
    return run(ssh_, {onTerminal ? "-t" : "-T", "--", phone_.host, line});
  }

 private:
  // With what holds for ssh and scp; the user's own configuration has the rest. Returns as runToEnd().
  int run(const fs::path& program, const std::vector<std::string>& arguments, int output = STDOUT_FILENO,
          int errors = STDERR_FILENO, const std::vector<int>& passed = {}) const {
    ProcessStart start{{program.string(), "-o", "ControlPath=" + (folder_ / "socket").string(), "-o",
                        "RemoteCommand=none", "-o", "User=" + phone_.user},
                       {},
                       STDIN_FILENO,
                       output,
                       errors,
                       passed,
                       SIGTERM};
    if (!phone_.port.empty()) start.words.insert(start.words.end(), {"-o", "Port=" + phone_.port});
    start.words.insert(start.words.end(), arguments.begin(), arguments.end());
    return runToEnd(start);
  }

  Phone phone_;
  fs::path ssh_;
  fs::path scp_;
  fs::path folder_;
  Descriptor nothing_ = openNothing();
};

// A name that nobody on the phone can have put a link at.
std::string nameOnPhone() {
  std::random_device random;
  std::ostringstream name;
  name << "/tmp/tweakbench-" << std::hex << random() << random() << ".deb";
  return name.str();
}

// Not what ssh would take for an option, either.
bool isName(const std::string& text, const char* others) {
  return !text.empty() && text.front() != '-' && isMadeOf(text, others);
}

}  // namespace

Phone phoneFor(const std::string& typed, const Environment& caller) {
  const std::string whole = typed.empty() ? lookUp(caller, "THEOS_DEVICE_IP").value_or("") : typed;
  if (whole.empty()) throw Refusal("Which phone? Give USER@HOST, or set THEOS_DEVICE_IP.");
  const auto at = whole.rfind('@');
  const bool hasUser = at != std::string::npos;
  Phone phone{hasUser ? whole.substr(0, at) : lookUp(caller, "THEOS_DEVICE_USER").value_or("root"),
              hasUser ? whole.substr(at + 1) : whole, lookUp(caller, "THEOS_DEVICE_PORT").value_or("")};
  if (phone.host.starts_with('[') && phone.host.ends_with(']'))
    phone.host = phone.host.substr(1, phone.host.size() - 2);
  if (!isName(phone.host, "._-:%"))
    throw Refusal("\"" + visible(phone.host) + "\" is not the name of a host.");
  // An IPv6 address has several.
  if (std::count(phone.host.begin(), phone.host.end(), ':') == 1) {
    throw Refusal("\"" + phone.host +
                  "\" is not the name of a host; the port goes into the variable THEOS_DEVICE_PORT.");
  }
  if (!isName(phone.user, "._-")) throw Refusal("\"" + visible(phone.user) + "\" is not the name of a user.");
  const bool isPort =
      phone.port.size() <= 5 && phone.port.find_first_not_of("0123456789") == std::string::npos;
  if (!isPort) throw Refusal("THEOS_DEVICE_PORT is \"" + visible(phone.port) + "\", which is not a port.");
  return phone;
}

int sendPackage(const Transfer& transfer, const std::string& project, const Phone& phone,
                const Environment& caller) {
  transfer.inDevice.assume();
  openProject(transfer.var.get(), project);
  std::string name;
  const Descriptor package = openNewestPackage(transfer.var.get(), project, name);
  if (!package) throw Refusal("The project " + project + " has no package; tweakbench build makes one.");
  transfer.host.assume();
  const Connection connection(phone, caller);
  say("Sending " + name + " to " + phone.user + "@" + phone.host + ".");
  try {
    connection.establish();
    const std::string target = nameOnPhone();
    if (connection.copy(package, target) != 0) {
      connection.command("rm -f " + target, false);
      throw NotSent{NotCopiedToPhone,
                    "The package could not be copied to " + phone.host + "; see what scp says above."};
    }
    const bool isRoot = phone.user == "root";
    // In a shell that is known, whatever the user's own is there. sudo may ask for a password.
    const int status = connection.command(std::string("exec sh -c '") + (isRoot ? "" : "sudo ") + "dpkg -i " +
                                              target + "; status=$?; rm -f " + target + "; exit $status'",
                                          !isRoot && isatty(STDIN_FILENO) != 0);
    if (status == sshFailed) {
      throw NotSent{Unreachable, "The connection to " + phone.host +
                                     " broke while the package was installed; send it again."};
    }
    if (status != 0) {
      throw NotSent{
          NotInstalled,
          name + " could not be installed: " + (isRoot ? "dpkg" : "sudo or dpkg") + " on " + phone.host +
              (status == 127 ? " is missing" : " ended with status " + std::to_string(status)) + "."};
    }
    say(name + " is installed on " + phone.host + ".");
    return 0;
  } catch (const NotSent& failure) {
    say(failure.sentence);
    return failure.status;
  }
}
