// In a program and a process of its own, since nothing may have chosen for or against motion before.
#include "core/LauncherContract.h"
#include "platform/UIScreen.h"

#include <unistd.h>

#include <QByteArray>
#include <gtest/gtest.h>

namespace {

TEST(Motion, FollowsTheDesktopUntilTheProgramChooses) {
  const auto follows = [] {
    qunsetenv(reducedMotionVariable);
    const bool isOnAtFirst = motionEnabled();
    qputenv(reducedMotionVariable, QByteArrayLiteral("1"));
    const bool isOffThen = !motionEnabled();
    setMotionEnabled(true);
    return isOnAtFirst && isOffThen && motionEnabled();
  };
  EXPECT_EXIT(_exit(follows() ? 0 : 1), testing::ExitedWithCode(0), "");
}

}  // namespace
