#include "device/sandbox/Arguments.h"

#include <algorithm>
#include <fstream>
#include <initializer_list>
#include <iterator>

namespace {

// Memory that the device can take by files that are in no folder: above what builds need, below what hurts.
constexpr const char* temporarySize = "536870912";
constexpr const char* sharedMemorySize = "67108864";
constexpr const char* runtimeSize = "16777216";

class ArgumentList {
 public:
  void add(std::initializer_list<std::string> words) { list_.insert(list_.end(), words); }
  std::vector<std::string> take() { return std::move(list_); }

 private:
  std::vector<std::string> list_;
};

void addNamespaces(ArgumentList& list, const Request& request) {
  list.add({"--unshare-user", "--unshare-pid", "--unshare-ipc", "--unshare-uts", "--unshare-cgroup"});
  if (request.network == Options::Network::Off) list.add({"--unshare-net"});
  list.add({"--hostname", "device", "--disable-userns", "--assert-userns-disabled", "--cap-drop", "ALL",
            "--new-session", "--die-with-parent"});
}

void addSystem(ArgumentList& list, const Request& request) {
  for (const char* folder : {"/.host", "/etc", "/opt", "/private", "/run"}) list.add({"--dir", folder});
  list.add({"--ro-bind", "/usr", "/usr", "--ro-bind", "/usr", "/.host/usr"});
  for (const auto& link : request.rootLinks) list.add({"--symlink", link.target, link.path});
  // Not the whole of /etc/ssl: its private keys are open to a group that the caller may be in.
  for (const char* path :
       {"/etc/alternatives", "/etc/fonts", "/etc/ssl/certs", "/etc/ssl/openssl.cnf", "/etc/ld.so.cache"}) {
    list.add({"--ro-bind-try", path, path});
  }
  for (const auto& file : request.dataFiles) {
    list.add({"--perms", "0444", "--ro-bind-data", std::to_string(file.content), file.path});
  }
  // Read-only, or a build could have the kernel kill the application first when memory is short.
  list.add({"--proc", "/proc", "--remount-ro", "/proc", "--dev", "/dev"});
  // Followed only where a log is shown there.
  list.add({"--symlink", "/.host/log", "/dev/log"});
  list.add({"--perms", "1777", "--size", sharedMemorySize, "--tmpfs", "/dev/shm", "--remount-ro", "/dev"});
  list.add({"--perms", "1777", "--size", temporarySize, "--tmpfs", "/tmp"});
  list.add({"--perms", "0700", "--size", runtimeSize, "--tmpfs", "/run/mobile"});
}

void addOwnFiles(ArgumentList& list, const Request& request) {
  list.add({"--ro-bind", request.ownFiles.string(), "/.host/tweakbench", "--dir", "/.host/empty"});
  // Below /var it would be the device's to change.
  list.add({"--ro-bind-try", "/var/cache/fontconfig", "/.host/fontconfig"});
}

// Whole top-level folders only: a mount point below a folder that the device can write would be led astray by
// a link that a build left there.
void addDeviceFolders(ArgumentList& list, const Request& request) {
  list.add({"--bind-fd", std::to_string(request.applications), "/Applications"});
  list.add({"--bind-fd", std::to_string(request.var), "/var"});
  list.add({"--bind-fd", std::to_string(request.userPrograms), "/usr/bin"});
  list.add({"--ro-bind-fd", std::to_string(request.shellPrograms), "/bin"});
  // As on a phone; the import prompt's example starts with mobile/.
  list.add({"--symlink", "/var", "/private/var", "--symlink", "/var/mobile", "/mobile"});
  const bool isWritable = request.theosAccess == Options::Theos::Writable;
  list.add({isWritable ? "--bind" : "--ro-bind", request.theos.string(), "/opt/theos"});
  if (request.theosLibraries < 0) return;
  list.add({"--ro-bind", request.theos.string(), "/.host/theos"});
  list.add({"--bind-fd", std::to_string(request.theosLibraries), "/opt/theos/lib"});
}

namespace fs = std::filesystem;

std::string accounts(const Account& account) {
  const std::string user = std::to_string(account.user);
  const std::string group = std::to_string(account.group);
  return "root:x:0:0:root:/var/root:/bin/sh\n"
         "mobile:x:" +
         user + ":" + group +
         ":Mobile User:/var/mobile:/bin/sh\n"
         "nobody:x:65534:65534:nobody:/nonexistent:/usr/sbin/nologin\n";
}

std::string groups(const Account& account) {
  return "root:x:0:\nmobile:x:" + std::to_string(account.group) + ":\nnogroup:x:65534:\n";
}

// Absent files count as empty.
std::string contentOf(const char* path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> fontRules() {
  std::vector<std::string> rules;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator("/etc/fonts/conf.d", error)) {
    const std::string name = entry.path().filename();
    // This one reads from the home folder, which builds can write.
    if (name != "50-user.conf" && name.ends_with(".conf")) rules.push_back(entry.path());
  }
  std::sort(rules.begin(), rules.end());
  return rules;
}

}  // namespace

std::vector<std::string> bwrapArguments(const Request& request) {
  ArgumentList list;
  addNamespaces(list, request);
  list.add({"--clearenv"});
  for (const auto& [name, value] : request.environment) list.add({"--setenv", name, value});
  addSystem(list, request);
  addOwnFiles(list, request);
  addDeviceFolders(list, request);
  for (const auto& socket : request.sockets) list.add({"--ro-bind", socket.host.string(), socket.path});
  list.add({"--json-status-fd", std::to_string(request.statusOutput)});
  list.add({"--remount-ro", "/", "--chdir", "/"});
  return list.take();
}

std::string fontConfiguration(const std::vector<std::string>& rules) {
  std::string text =
      "<?xml version=\"1.0\"?>\n<!DOCTYPE fontconfig SYSTEM \"urn:fontconfig:fonts.dtd\">\n<fontconfig>\n"
      "  <dir>/usr/share/fonts</dir>\n  <dir>/usr/local/share/fonts</dir>\n"
      "  <cachedir>/.host/fontconfig</cachedir>\n";
  for (const auto& rule : rules) text += "  <include ignore_missing=\"yes\">" + rule + "</include>\n";
  return text + "</fontconfig>\n";
}

std::vector<DataFileContent> deviceDataFiles(const Account& account, Options::Network network) {
  std::vector<DataFileContent> files{
      {"/etc/passwd", accounts(account)},
      {"/etc/group", groups(account)},
      {"/etc/nsswitch.conf", "passwd: files\ngroup: files\nhosts: files dns\n"},
      {"/.host/fonts.conf", fontConfiguration(fontRules())},
  };
  if (network == Options::Network::On) {
    files.push_back({"/etc/resolv.conf", contentOf("/etc/resolv.conf")});
    files.push_back({"/etc/hosts", contentOf("/etc/hosts")});
  } else {
    files.push_back({"/etc/hosts", "127.0.0.1 localhost device\n::1 localhost\n"});
  }
  return files;
}
