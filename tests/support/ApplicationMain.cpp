// Runs the tests of widgets with one application object, off screen, without motion, with the fonts, language
// and scale that pictures are compared in.
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  for (const char* name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI",
                           "QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "QT_USE_PHYSICAL_DPI", "LANGUAGE"})
    qunsetenv(name);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("LC_ALL", "C.UTF-8");
  qputenv("FONTCONFIG_FILE", TWEAKBENCH_TEST_FONTS);
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
    EXPECT_FALSE(text.startsWith("QPainter")) << text.toStdString();
  });
  UIApplication application(argc, argv);
  QApplication::setCursorFlashTime(0);
  setMotionEnabled(false);
  UIScreen::mainScreen()->show();
  return RUN_ALL_TESTS();
}
