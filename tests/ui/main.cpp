// Runs the tests of the screens with one application object, off screen, without motion.
#include "platform/UIApplication.h"
#include "platform/UIDevice.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  UIApplication application(argc, argv);
  setMotionEnabled(false);
  return RUN_ALL_TESTS();
}
