#include "device/sandbox/Diagnosis.h"

#include <fstream>
#include <initializer_list>

namespace device {
namespace {

std::optional<long> setting(const char* path) {
  std::ifstream file(path);
  long value = 0;
  if (file >> value) return value;
  return std::nullopt;
}

bool contains(const std::string& text, std::initializer_list<const char*> parts) {
  for (const char* part : parts) {
    if (text.find(part) != std::string::npos) return true;
  }
  return false;
}

std::string firstLine(const std::string& message) {
  std::string line = message.substr(0, message.find('\n'));
  if (line.starts_with("bwrap: ")) line = line.substr(7);
  return line.empty() ? "bubblewrap gave no reason" : line;
}

}  // namespace

NamespaceSettings readNamespaceSettings() {
  return {setting("/proc/sys/kernel/unprivileged_userns_clone"),
          setting("/proc/sys/user/max_user_namespaces"),
          setting("/proc/sys/kernel/apparmor_restrict_unprivileged_userns")};
}

std::string explainFailure(const std::string& message, const NamespaceSettings& settings) {
  const std::string start = kSetUpFailed;
  if (contains(message, {"Unknown option"})) {
    return start + "this bubblewrap is too old; install version 0.8.0-2+deb12u1, 0.10 or later.";
  }
  if (settings.unprivilegedClone == 0) {
    return start +
           "user namespaces are switched off; an administrator can allow them with "
           "\"sysctl -w kernel.unprivileged_userns_clone=1\".";
  }
  if (settings.maximum == 0) {
    return start +
           "the number of user namespaces is limited to none; an administrator can allow them with "
           "\"sysctl -w user.max_user_namespaces=10000\".";
  }
  const bool isRefusal = contains(
      message, {"uid map", "new namespace", "RTM_NEWADDR", "Operation not permitted", "No permissions"});
  if (isRefusal && settings.appArmorRestriction.value_or(0) != 0) {
    return start +
           "AppArmor lets no ordinary program make user namespaces; an administrator can allow it with a "
           "profile for "
           "/usr/bin/bwrap that has \"userns,\" in it.";
  }
  if (isRefusal) {
    return start + "this system refuses user namespaces, as many containers do (" + firstLine(message) + ").";
  }
  return start + firstLine(message) + ".";
}

}  // namespace device
