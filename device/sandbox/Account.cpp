#include "device/sandbox/Account.h"

#include "device/Refusal.h"
#include "device/Visible.h"

#include <grp.h>
#include <linux/capability.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

namespace {

// High among the numbers for people, so that no account is likely to have it; and not 65534, which files of
// unknown owners seem to belong to.
constexpr uid_t firstOwnUser = 58421;
constexpr uid_t lastOwnUser = 59999;

std::filesystem::path homeOf(const Environment& caller, uid_t user) {
  if (auto home = lookUp(caller, "HOME")) return *home;
  const passwd* entry = getpwuid(user);
  return entry != nullptr ? entry->pw_dir : "/";
}

}  // namespace

std::optional<Account> callingAccount(const Environment& caller) {
  const uid_t user = geteuid();
  if (user != 0) return Account{user, getegid(), homeOf(caller, user)};
  const auto sudoUser = numberIn(lookUp(caller, "SUDO_UID").value_or(""));
  if (!sudoUser || *sudoUser == 0) return std::nullopt;
  const passwd* entry = getpwuid(*sudoUser);
  if (entry == nullptr) return std::nullopt;
  return Account{*sudoUser, entry->pw_gid, entry->pw_dir};
}

Account accountForFolderOf(uid_t owner, gid_t group, const Environment& caller) {
  const std::filesystem::path home = homeOf(caller, 0);
  if (owner != 0) return Account{owner, group != 0 ? group : gid_t{owner}, home};
  for (uid_t user = firstOwnUser; user <= lastOwnUser; ++user) {
    if (getpwuid(user) == nullptr && getgrgid(user) == nullptr) return Account{user, user, home};
  }
  throw Refusal("No ordinary user number is free for the device; start Tweakbench as an ordinary user.");
}

Caller::Caller(const Options& options)
    : environment(callerEnvironment()),
      isSettled(callingAccount(environment).has_value()),
      account(isSettled ? *callingAccount(environment) : accountForFolderOf(0, 0, environment)),
      device(options.device ? std::filesystem::absolute(*options.device)
                            : defaultDevice(environment, account.home)) {}

void become(const Account& account) {
  if (geteuid() != 0) return;
  if (account.user == 0) throw Refusal("The device never runs as root.");
  if (setgroups(0, nullptr) != 0 || setresgid(account.group, account.group, account.group) != 0 ||
      setresuid(account.user, account.user, account.user) != 0) {
    refuseWithError("Root could not become the device's user:");
  }
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct nothing[_LINUX_CAPABILITY_U32S_3] = {};
  if (syscall(SYS_capset, &header, nothing) != 0)
    refuseWithError("Root's capabilities could not be given up:");
  if (setresuid(0, 0, 0) == 0)
    throw Refusal("Root's rights could not be dropped; start Tweakbench as an ordinary user.");
  // Changing the user closes this process's /proc entries to itself.
  prctl(PR_SET_DUMPABLE, 1, 0, 0, 0);
}

Rights Rights::own() {
  return {geteuid(), getegid()};
}

void Rights::assume() const {
  if (geteuid() == user_) return;
  // Only root may change its group, and only while it is root.
  if (seteuid(0) != 0 || setegid(group_) != 0 || seteuid(user_) != 0)
    refuseWithError("Root could not change its user:");
}

RightsAfterwards::~RightsAfterwards() {
  try {
    rights_.assume();
  } catch (const Refusal&) {
    // Less rights than wanted, never more.
  }
}
