// The keyboard's focus, between screens and in a list.
#include "platform/UIScreen.h"
#include "platform/UIViewController.h"
#include "platform/UIWindow.h"
#include "tests/ui/Screens.h"
#include "ui/controls/Looks.h"

#include <QListView>

namespace {

using finger::sees;
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
  // In the list of files, which is returned.
  static QListView& pickTweak() {
    tabTo("Files");
    auto& list = *qobject_cast<QListView*>(QApplication::focusWidget());
    press(Qt::Key_Home);
    for (int row = 0; row < list.model()->rowCount() && list.currentIndex().data() != "Tweak.x"; ++row)
      press(Qt::Key_Down);
    press(Qt::Key_Return);
    return list;
  }
};

TEST_F(Keyboard, NoKeyActsOnAScreenThatIsOnItsWayOutOfSight) {
  makeProject({{"Tweak.x", "%hook A\n"}});
  startActive();
  setMotionEnabled(true);
  const std::size_t windows = UIScreen::mainScreen()->windows().size();
  const QColor captions = finger::find("Reload")->palette().color(QPalette::Disabled, QPalette::ButtonText);
  const QListView& list = pickTweak();
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

}  // namespace
