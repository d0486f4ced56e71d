// Runs the tests of widgets with one application object, off screen, without motion.
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  UIApplication application(argc, argv);
  setMotionEnabled(false);
  UIScreen::mainScreen()->show();
  return RUN_ALL_TESTS();
}
