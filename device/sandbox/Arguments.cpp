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

using ArgumentList = std::vector<std::string>;

void add(ArgumentList& list, std::initializer_list<std::string> words) {
  list.insert(list.end(), words);
}

void addNamespaces(ArgumentList& list, const Request& request) {
  add(list, {"--unshare-user", "--unshare-pid", "--unshare-ipc", "--unshare-uts", "--unshare-cgroup"});
  if (!request.hasNetwork) add(list, {"--unshare-net"});
  add(list, {"--hostname", "device", "--disable-userns", "--assert-userns-disabled", "--cap-drop", "ALL",
             "--new-session", "--die-with-parent"});
}

void addSystem(ArgumentList& list, const Request& request) {
  for (const char* folder : {"/.host", "/etc", "/opt", "/private", "/run"}) add(list, {"--dir", folder});
  add(list, {"--ro-bind", "/usr", "/usr", "--ro-bind", "/usr", "/.host/usr"});
  for (const auto& link : request.rootLinks) add(list, {"--symlink", link.source, link.path});
  // Not the whole of /etc/ssl: its private keys are open to a group that the caller may be in.
  for (const char* path :
       {"/etc/alternatives", "/etc/fonts", "/etc/ssl/certs", "/etc/ssl/openssl.cnf", "/etc/ld.so.cache"}) {
    add(list, {"--ro-bind-try", path, path});
  }
  for (const auto& file : request.dataFiles) {
    add(list, {"--perms", "0444", "--ro-bind-data", std::to_string(file.content), file.path});
  }
  // Read-only, or a build could have the kernel kill the application first when memory is short.
  add(list, {"--proc", "/proc", "--remount-ro", "/proc", "--dev", "/dev"});
  // Followed only where a log is shown there.
  add(list, {"--symlink", "/.host/log", "/dev/log"});
  add(list, {"--perms", "1777", "--size", sharedMemorySize, "--tmpfs", "/dev/shm", "--remount-ro", "/dev"});
  add(list, {"--perms", "1777", "--size", temporarySize, "--tmpfs", "/tmp"});
  add(list, {"--perms", "0700", "--size", runtimeSize, "--tmpfs", "/run/mobile"});
}

void addOwnFiles(ArgumentList& list, const Request& request) {
  add(list, {"--ro-bind", request.ownFiles.string(), "/.host/tweakbench", "--dir", "/.host/empty"});
  // Below /var it would be the device's to change.
  add(list, {"--ro-bind-try", "/var/cache/fontconfig", "/.host/fontconfig"});
}

// Whole top-level folders only: a mount point below a folder that the device can write would be led astray by
// a link that a build left there.
void addDeviceFolders(ArgumentList& list, const Request& request) {
  add(list, {"--bind-fd", std::to_string(request.folders.applications.get()), "/Applications"});
  add(list, {"--bind-fd", std::to_string(request.folders.var.get()), "/var"});
  add(list, {"--bind-fd", std::to_string(request.folders.userPrograms.get()), "/usr/bin"});
  add(list, {"--ro-bind-fd", std::to_string(request.folders.shellPrograms.get()), "/bin"});
  // As on a phone; the import prompt's example starts with mobile/.
  add(list, {"--symlink", "/var", "/private/var", "--symlink", "/var/mobile", "/mobile"});
  add(list, {request.isTheosWritable ? "--bind" : "--ro-bind", request.theos.string(), "/opt/theos"});
  if (!request.hasOwnLibraries) return;
  add(list, {"--ro-bind", request.theos.string(), "/.host/theos"});
  add(list, {"--bind-fd", std::to_string(request.folders.theosLibraries.get()), "/opt/theos/lib"});
}

std::string accounts(const Account& account) {
  const std::string user = std::to_string(account.user);
  const std::string group = std::to_string(account.group);
  return "root:x:0:0:root:/var/root:/bin/sh\nmobile:x:" + user + ":" + group +
         ":Mobile User:/var/mobile:/bin/sh\nnobody:x:65534:65534:nobody:/nonexistent:/usr/sbin/nologin\n";
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
  add(list, {"--clearenv"});
  for (const auto& [name, value] : request.environment) add(list, {"--setenv", name, value});
  addSystem(list, request);
  addOwnFiles(list, request);
  addDeviceFolders(list, request);
  for (const auto& socket : request.sockets) add(list, {"--ro-bind", socket.source, socket.path});
  add(list, {"--json-status-fd", std::to_string(request.statusOutput)});
  add(list, {"--remount-ro", "/", "--chdir", "/"});
  return list;
}

std::string fontConfiguration(const std::vector<std::string>& rules) {
  std::string text =
      "<?xml version=\"1.0\"?>\n<!DOCTYPE fontconfig SYSTEM \"urn:fontconfig:fonts.dtd\">\n<fontconfig>\n"
      "  <dir>/usr/share/fonts</dir>\n  <dir>/usr/local/share/fonts</dir>\n"
      "  <cachedir>/.host/fontconfig</cachedir>\n";
  for (const auto& rule : rules) text += "  <include ignore_missing=\"yes\">" + rule + "</include>\n";
  return text + "</fontconfig>\n";
}

std::map<std::string, std::string> deviceDataFiles(const Account& account, bool hasNetwork) {
  std::map<std::string, std::string> files{
      {"/etc/passwd", accounts(account)},
      {"/etc/group", groups(account)},
      {"/etc/nsswitch.conf", "passwd: files\ngroup: files\nhosts: files dns\n"},
      {"/.host/fonts.conf", fontConfiguration(fontRules())},
  };
  if (hasNetwork) {
    for (const char* path : {"/etc/resolv.conf", "/etc/hosts"}) files[path] = contentOf(path);
  } else {
    files["/etc/hosts"] = "127.0.0.1 localhost device\n::1 localhost\n";
  }
  return files;
}
