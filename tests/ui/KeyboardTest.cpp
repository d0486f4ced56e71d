// Keys: where they go while screens change and files load, and what they mean in a list, a search and marks.
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "platform/UIViewController.h"
#include "platform/UIWindow.h"
#include "support/Clock.h"
#include "tests/ui/Screens.h"
#include "ui/controls/CodeView.h"
#include "ui/controls/Looks.h"

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

TEST_F(Keyboard, TheListShowsItsFocusOnlyToThoseWhoUseTheKeyboard) {
  makeProject({{"Tweak.x", ""}});
  startActive();
  openEditor("Tweak.x");
  leaveEditor("Cancel");
  ASSERT_TRUE(focusIsOn("Files"));
  auto& list = *qobject_cast<QListView*>(QApplication::focusWidget());
  const auto hasRing = [&list] {
    const QRect row = list.visualRect(list.currentIndex());
    return list.viewport()->grab().toImage().pixelColor(row.center().x(), row.top()) == colours::focusRing;
  };
  EXPECT_FALSE(hasRing());
  press(Qt::Key_Tab);
  tabTo("Files");
  EXPECT_TRUE(hasRing());
}

TEST_F(Keyboard, ASearchIsBoundedAndEndsWithItsDialog) {
  std::string lines;
  for (int line = 0; line < 5000; ++line) lines += "same\n";
  makeProject({{"f", lines}});
  mkfifo((device::projects + "P/waits").c_str(), 0600);
  startActive();
  press(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  waitToSee(localized(text::searchResults));
  {
    const HeldClock clock;
    typeText("same");
    const auto isSearchedAfter = [](long milliseconds) {
      HeldClock::turn(milliseconds);
      QCoreApplication::processEvents();
      return sees(localized(text::searching));
    };
    EXPECT_FALSE(isSearchedAfter(140)) << "while somebody still types";
    EXPECT_TRUE(isSearchedAfter(20));
  }
  waitToSee(localized(text::onlyFirstLines, {std::string("2000")}));
  const auto* const found = qobject_cast<QListView*>(finger::find(localized(text::searchResults)));
  EXPECT_EQ(found->model()->rowCount(), 2000);
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

TEST_F(Keyboard, MarksMoveWithTheText) {
  makeProject({{"f.x", "one\ntwo words\nthree\n"}});
  startActive();
  openEditor("f.x");
  CodeView& text = *qobject_cast<CodeView*>(finger::find("File text"));
  text.setProblems({{.file = "f.x", .line = 2, .column = 5, .message = "unknown words"},
                    {.file = "f.x", .line = 9, .kind = Problem::Kind::Warning, .message = ""}});
  press(Qt::Key_Return);
  press(Qt::Key_F8);
  EXPECT_EQ(text.selectionBegin(), 9U);
  waitToSee("unknown words");
  press(Qt::Key_Up);
  waitToMiss("unknown words");
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_Delete);
  for (int steps = 0; text.isModified() && steps < 4; ++steps) press(Qt::Key_Z, Qt::ControlModifier);
  press(Qt::Key_F8);
  EXPECT_EQ(text.selectionBegin(), 8U) << "undone, the marks are where they were";
  const int height = text.height();
  text.setProblems({{.file = "f.x", .line = 2, .message = "\u202E" + std::string(1 << 20, 'x')}});
  waitToSee(QChar(0xFFFD) + QString(999, u'x'));
  EXPECT_GT(text.height(), height / 2) << "a long message leaves room for the text";
  leaveEditor("Cancel");
}

}  // namespace
