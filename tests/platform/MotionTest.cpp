// In a program of its own, since nothing may have chosen for or against motion before.
#include "core/LauncherContract.h"
#include "platform/UIScreen.h"

#include <QByteArray>
#include <gtest/gtest.h>

namespace {

TEST(Motion, FollowsTheDesktopUntilTheProgramChooses) {
  qunsetenv(reducedMotionVariable);
  EXPECT_TRUE(motionEnabled());
  qputenv(reducedMotionVariable, QByteArrayLiteral("1"));
  EXPECT_FALSE(motionEnabled());
  setMotionEnabled(true);
  EXPECT_TRUE(motionEnabled());
}

}  // namespace
