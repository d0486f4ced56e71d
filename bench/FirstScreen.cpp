// The application up to its painted main screen; ends then, and says what it holds in memory.
#include "bench/FirstPaint.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "ui/screens/AppDelegate.h"

int main(int argc, char** argv) {
  return UIApplicationMain(argc, argv, [] {
    endCommandsWithApplication();
    auto delegate = makeAppDelegate();
    endAfterFirstPaint(*UIScreen::mainScreen());
    return delegate;
  });
}
