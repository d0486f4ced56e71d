// Keys: how few the main job takes, and where they go while screens change.
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "platform/UIViewController.h"
#include "platform/UIWindow.h"
#include "tests/ui/Screens.h"

#include <QListView>

namespace {

using finger::sees;
using finger::tap;
using finger::waitToSee;

class Keyboard : public Screens {
 protected:
  ~Keyboard() override { setMotionEnabled(false); }

  static bool focusIsOn(const char* name) {
    const QWidget* const focused = QApplication::focusWidget();
    return focused != nullptr && focused->accessibleName() == name;
  }
  static void tabTo(const char* name) {
    for (int tabs = 0; tabs < 20 && !focusIsOn(name); ++tabs) press(Qt::Key_Tab);
    ASSERT_TRUE(focusIsOn(name)) << name;
  }
};

TEST_F(Keyboard, ALineOfASubfolderIsBrokenFoundAndMendedInAFewKeysOrClicks) {
  for (const bool byMouse : {false, true}) {
    SCOPED_TRACE(byMouse);
    device::reset();
    makeProject({{"Makefile",
                  "ARCHS = arm64\nTARGET := iphone:clang:latest:14.0\n"
                  "include $(THEOS)/makefiles/common.mk\nTWEAK_NAME = P\nP_FILES = Tweak.x deep/Part.m\n"
                  "include $(THEOS_MAKE_PATH)/tweak.mk\n"},
                 {"Tweak.x", "#import <Foundation/Foundation.h>\n%hook NSObject\n%end\n"},
                 {"deep/Part.m", "int whole = 1;\n"},
                 {"P.plist", "{}"},
                 {"control",
                  "Package: p.p\nVersion: 1\nArchitecture: iphoneos-arm\nMaintainer: M\nDescription: d\n"}});
    putFile(updateMarker, "");
    startActive();
    int count = 0;
    const auto act = [&](const char* name, Qt::Key key, Qt::KeyboardModifiers modifiers) {
      ++count;
      byMouse ? finger::tap(name) : press(key, modifiers);
    };
    act("Go to File", Qt::Key_E, Qt::ControlModifier);
    waitToSee(localized(text::projectFiles));
    typeText("part");
    act("deep/Part.m", Qt::Key_Return, {});
    waitToSee("Part.m");
    typeText("int broken = ;");
    count = 0;
    act("Save", Qt::Key_S, Qt::ControlModifier);
    waitToSee("Reload");
    act("Build", Qt::Key_B, Qt::ControlModifier);
    waitToSee("Clear Log");
    act("Make Package", Qt::Key_B, Qt::ControlModifier);
    waitToSee("1 error");
    finger::waitUntil([] { return !sees(localized(text::pleaseWait)); }, "the build does not end");
    if (!byMouse) act("", Qt::Key_F8, {});
    act("deep/Part.m:1:14: error: expected expression", Qt::Key_Return, {});
    waitToSee("Part.m");
    ++count;
    typeText("2");
    act("Save", Qt::Key_S, Qt::ControlModifier);
    waitToSee("Clear Log");
    EXPECT_EQ(fileAt(device::projects + "P/deep/Part.m"), "int broken = 2;int whole = 1;\n");
    EXPECT_TRUE(sees("1 error")) << "the screen is kept";
    act("Make Package", Qt::Key_B, Qt::ControlModifier);
    waitToSee(localized(text::debIsReady, {std::string("P")}));
    EXPECT_FALSE(sees("1 error"));
    EXPECT_LE(count, 10);
    topDialog()->dismiss();
    delegate_.reset();
  }
}

TEST_F(Keyboard, NoKeyActsOnAScreenThatIsOnItsWayOutOfSight) {
  makeProject({{"Tweak.x", "%hook A\n"}});
  startActive();
  setMotionEnabled(true);
  const std::size_t windows = UIScreen::mainScreen()->windows().size();
  const QColor captions = finger::find("Reload")->palette().color(QPalette::Disabled, QPalette::ButtonText);
  tabTo("Files");
  const auto& list = *qobject_cast<QListView*>(QApplication::focusWidget());
  press(Qt::Key_Home);
  press(Qt::Key_Return);
  ASSERT_TRUE(list.isVisible()) << "the editor slides over it";
  EXPECT_FALSE(list.isEnabled());
  EXPECT_NE(list.palette().color(QPalette::Disabled, QPalette::ButtonText), captions)
      << "nothing looks dimmed";
  for (const Qt::Key key : {Qt::Key_N, Qt::Key_O, Qt::Key_P, Qt::Key_B}) press(key, Qt::ControlModifier);
  EXPECT_EQ(UIScreen::mainScreen()->windows().size(), windows);
  waitToMiss("Reload");
  ASSERT_TRUE(focusIsOn("File text"));
  typeText("// typed");
  QTest::mouseClick(finger::find("Cancel"), Qt::LeftButton);
  ASSERT_TRUE(sees("Save")) << "the editor slides away";
  EXPECT_TRUE(UIApplication::sharedApplication()->keyWindow()->topViewController()->screenShouldClose());
  press(Qt::Key_S, Qt::ControlModifier);
  press(Qt::Key_N, Qt::ControlModifier);
  EXPECT_EQ(UIScreen::mainScreen()->windows().size(), windows);
  waitToMiss("Save");
  EXPECT_EQ(fileAt(device::projects + "P/Tweak.x"), "%hook A\n");
  EXPECT_TRUE(focusIsOn("Files"));
  press(Qt::Key_N, Qt::ControlModifier);
  waitToSee(localized(text::projectOptions));  // in place, it takes keys again
  press(Qt::Key_Escape);
  waitToSee("Files");
}

TEST_F(Keyboard, KeysThatComeBeforeTheFileIsLoadedLoseNothing) {
  const std::string folder = makeProject({{"f.x", "text"}});
  startActive();
  for (const char* typed : {"my ", ""}) {
    tap("f.x");
    typeText(typed);
    press(Qt::Key_S, Qt::ControlModifier);
    waitToMiss("Save");
    EXPECT_EQ(fileAt(folder + "f.x"), "my text");
  }
}

}  // namespace
