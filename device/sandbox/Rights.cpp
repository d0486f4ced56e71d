#include "device/sandbox/Rights.h"

#include "device/Refusal.h"

#include <unistd.h>

namespace device {

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

}  // namespace device
