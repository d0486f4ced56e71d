// Whom the device runs as: never root.
#pragma once

#include "device/sandbox/Environment.h"

#include <filesystem>
#include <optional>
#include <sys/types.h>

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

// Who started the launcher, and the device that the options mean.
struct Caller {
  explicit Caller(const Options& options);

  Environment environment;
  // Whether `account` is the device's. If not, root itself started the launcher, and the owner of the
  // device's folder tells.
  bool isSettled;
  Account account;
  std::filesystem::path device;
};

// For root: becomes the account for good, with no group but its own and no capability. Another user stays.
// Throws Refusal.
void become(const Account& account);

// For root, who copies between its own files and the device user's and touches each with its owner's rights.
// Any other user has one kind of rights only.
class Rights {
 public:
  Rights(uid_t user, gid_t group) : user_(user), group_(group) {}
  // Of this process as it is.
  static Rights own();

  // Takes effect for the whole process; throws Refusal.
  void assume() const;

 private:
  uid_t user_;
  gid_t group_;
};

// Goes back to `rights` at the end of a scope, however that ends.
class RightsAfterwards {
 public:
  explicit RightsAfterwards(const Rights& rights) : rights_(rights) {}
  ~RightsAfterwards();
  RightsAfterwards(const RightsAfterwards&) = delete;
  RightsAfterwards& operator=(const RightsAfterwards&) = delete;

 private:
  Rights rights_;
};
