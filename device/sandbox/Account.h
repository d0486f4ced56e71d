// Whom the device runs as, which is never root, and what root shows that user.
#pragma once

#include "device/sandbox/Environment.h"

#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

struct Account {
  uid_t user;
  gid_t group;
  // The home folder in which the device and Theos are looked for.
  fs::path home;
};

// The caller's own account; for root, that of the sudo caller. Absent for root itself: the owner of the
// device's folder decides.
std::optional<Account> callingAccount(const Environment& caller);

// For root: the owner of the device's folder or, if that is root, a user number without an account.
Account accountForFolderOf(uid_t owner, gid_t group, const Environment& caller);

// Who started the launcher, and the device that the options mean.
struct Caller {
  explicit Caller(const Options& options);

  Environment environment;
  // False if root itself started the launcher: openDevice() then settles the account by the folder's owner.
  bool isSettled;
  Account account;
  fs::path device;
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

// Restores `rights` at the end of a scope.
class RightsAfterwards {
 public:
  explicit RightsAfterwards(const Rights& rights) : rights_(rights) {}
  ~RightsAfterwards();
  RightsAfterwards(const RightsAfterwards&) = delete;
  RightsAfterwards& operator=(const RightsAfterwards&) = delete;

 private:
  Rights rights_;
};

// A folder or a socket that the device's user has to reach.
struct Staged {
  // Where it is; afterwards where it is shown.
  fs::path* path;
  const char* name;
  // Whether a readable copy is shown of a folder that others may not read throughout, a strict umask being
  // the usual cause.
  bool isCopied = false;
};

// Only for root: gives this process mounts of its own. Folders that were opened before cannot be staged.
// Throws Refusal.
void enterMountNamespace();

// Only for root, once in a process, in a mount namespace of its own, so that nobody else sees a difference,
// and before it becomes the device's user. What is below closed folders (such as root's home) is shown under
// a path that everyone can reach. Throws Refusal.
void showOnStage(const std::vector<Staged>& all);
