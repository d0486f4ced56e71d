#include "device/sandbox/DataFiles.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace device {
namespace {

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

}  // namespace device
