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

// Only for root, once in a process, before it becomes the device's user. Folders below closed folders (such
// as root's home) are shown under a path that everyone can reach, in a mount namespace of this
// process, so that nobody else sees a difference.
class Stage {
 public:
  // Enters the mount namespace; throws Refusal.
  Stage();

  // Will show `source` (a folder or a socket). Returns where, once mount() has run.
  fs::path add(const fs::path& source, const std::string& name);

  // As add() for a folder of Tweakbench's own files: where others may not read all of it, a strict umask
  // being the usual cause, a readable copy is shown.
  fs::path addReadable(const fs::path& source, const std::string& name);

  // Mounts everything that was added.
  void mount();

 private:
  struct Entry {
    Descriptor source;
    fs::path target;
    bool isCopied;
  };

  std::vector<Entry> entries_;
};
