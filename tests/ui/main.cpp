// Runs the tests of the screens with one application object, off screen, without motion.
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "tour/Finger.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  UIApplication application(argc, argv);
  setMotionEnabled(false);
  finger::patience = 30'000;
  return RUN_ALL_TESTS();
}
