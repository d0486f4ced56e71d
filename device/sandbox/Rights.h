// Whose rights the next system calls have.
#pragma once

#include <sys/types.h>

namespace device {

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

}  // namespace device
