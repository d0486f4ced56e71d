// Whom the device runs as: never root.
#pragma once

#include "device/sandbox/Environment.h"

#include <filesystem>
#include <optional>
#include <sys/types.h>

namespace device {

struct Account {
  uid_t user;
  gid_t group;
  // The home folder in which the device and Theos are looked for.
  std::filesystem::path home;
};

// The caller's own account. Started as root: who called sudo, if that is how.
// Absent: root itself, and the device folder's owner has to tell.
std::optional<Account> callingAccount(const Environment& caller);

// For root: the device folder's owner, or where root owns it, an ordinary number that no account has.
Account accountForFolderOf(uid_t owner, gid_t group, const Environment& caller);

// Becomes the account for good, with no group but its own and no capability; throws Refusal if that fails.
void become(const Account& account);

}  // namespace device
