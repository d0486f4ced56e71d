#include "platform/NSNotificationCenter.h"
#include "platform/UIActivityIndicatorView.h"
#include "platform/UIApplication.h"
#include "platform/UIKeyboard.h"
#include "platform/UIScreen.h"
#include "platform/UIViewController.h"
#include "platform/UIWindow.h"
#include "support/Clock.h"

#include <memory>
#include <string>
#include <vector>

#include <QAccessible>
#include <QLineEdit>
#include <QShortcut>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

class FieldsController : public UIViewController {
 public:
  QLineEdit* first = nullptr;
  QLineEdit* second = nullptr;

 protected:
  void loadView() override {
    auto* view = new QWidget;
    first = new QLineEdit(view);
    second = new QLineEdit(view);
    second->move(0, 60);
    setView(view);
  }
};

class Windows : public testing::Test {
 protected:
  void SetUp() override {
    lower->setRootViewController(below);
    upper->setRootViewController(above);
    lower->makeKeyAndVisible();
    ASSERT_TRUE(QTest::qWaitForWindowActive(UIScreen::mainScreen()));
  }

  static UIWindow* keyWindow() { return UIApplication::sharedApplication()->keyWindow(); }
  static QWidget* focus() { return UIScreen::mainScreen()->focusWidget(); }

  std::shared_ptr<FieldsController> below = std::make_shared<FieldsController>();
  std::shared_ptr<FieldsController> above = std::make_shared<FieldsController>();
  std::shared_ptr<UIWindow> lower = makeUIWindow();
  std::shared_ptr<UIWindow> upper = makeUIWindow(UIWindowLevelAlert);
};

TEST_F(Windows, TakeKeysFromTheOneBelowAndGiveTheFocusBackWhereItWas) {
  below->second->setFocus();
  int shortcuts = 0;
  auto* shortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_B), lower.get());
  QObject::connect(shortcut, &QShortcut::activated, lower.get(), [&] { ++shortcuts; });
  const auto press = [] {
    QTest::keyClick(UIScreen::mainScreen()->windowHandle(), Qt::Key_B, Qt::ControlModifier);
  };
  upper->makeKeyAndVisible();
  EXPECT_TRUE(QAccessible::queryAccessibleInterface(below->second)->state().disabled);
  press();
  EXPECT_EQ(shortcuts, 0);
  upper->setHidden(true);
  EXPECT_EQ(focus(), below->second);
  press();
  EXPECT_EQ(shortcuts, 1);
  // So they do when they are released, also where the field had been left meanwhile.
  below->first->setFocus();
  lower->endEditing();
  EXPECT_NE(focus(), below->first);
  upper->makeKeyAndVisible();
  upper.reset();
  EXPECT_EQ(keyWindow(), lower.get());
  EXPECT_EQ(focus(), below->first);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_THAT(UIScreen::mainScreen()->windows(), ElementsAre(lower.get()));
}

TEST_F(Windows, PostTheirComingAndGoingOnceEach) {
  std::vector<std::string> heard;
  QObject observer;
  for (const QString& name : {UIWindowDidBecomeVisibleNotification, UIWindowDidBecomeHiddenNotification,
                              UIWindowDidBecomeKeyNotification}) {
    NSNotificationCenter::defaultCenter().addObserver(
        &observer, name, upper.get(),
        [&heard](const NSNotification& notification) { heard.push_back(notification.name.toStdString()); });
  }
  upper->makeKeyAndVisible();
  upper->makeKeyAndVisible();
  upper->setHidden(true);
  upper->setHidden(true);
  EXPECT_THAT(heard, ElementsAre("UIWindowDidBecomeVisibleNotification", "UIWindowDidBecomeKeyNotification",
                                 "UIWindowDidBecomeHiddenNotification"));
}

TEST_F(Windows, AlwaysFillTheScreen) {
  upper->makeKeyAndVisible();
  UIScreen::mainScreen()->resize(700, 500);
  QCoreApplication::processEvents();
  EXPECT_EQ(lower->geometry(), QRect(0, 0, 700, 500));
  EXPECT_EQ(above->view()->size(), QSize(700, 500));
  EXPECT_EQ(UIDevice::currentDevice().userInterfaceIdiom(), UIUserInterfaceIdiom::Phone);
  UIScreen::mainScreen()->resize(820, 1180);
  EXPECT_EQ(UIDevice::currentDevice().userInterfaceIdiom(), UIUserInterfaceIdiom::Pad);
  UIScreen::mainScreen()->resize(390, 844);
}

TEST(TheKeyboard, ReportsItsFrameAndWhetherItShows) {
  std::vector<std::string> heard;
  QObject observer;
  for (const QString& name : {UIKeyboardWillShowNotification, UIKeyboardWillHideNotification,
                              UIKeyboardWillChangeFrameNotification}) {
    NSNotificationCenter::defaultCenter().addObserver(
        &observer, name, nullptr, [&heard](const NSNotification& notification) {
          const QRectF frame = notification.userInfo.value(UIKeyboardFrameEndUserInfoKey).toRectF();
          EXPECT_GT(notification.userInfo.value(UIKeyboardAnimationDurationUserInfoKey).toDouble(), 0);
          EXPECT_TRUE(notification.userInfo.contains(UIKeyboardAnimationCurveUserInfoKey));
          heard.push_back(notification.name.toStdString() + " " + std::to_string(int(frame.height())));
        });
  }
  UIKeyboard keyboard(nullptr);
  keyboard.setFrame({0, 600, 390, 244});
  keyboard.setFrame({0, 600, 390, 244});
  keyboard.setFrame({0, 500, 390, 344});
  keyboard.setFrame({});
  EXPECT_THAT(heard,
              ElementsAre("UIKeyboardWillChangeFrameNotification 244", "UIKeyboardWillShowNotification 244",
                          "UIKeyboardWillChangeFrameNotification 344",
                          "UIKeyboardWillChangeFrameNotification 0", "UIKeyboardWillHideNotification 0"));
}

TEST(TheActivityIndicator, WakesTheProcessorOnlyWhileItSpinsInSight) {
  const HeldClock clock;
  QWidget parent(UIScreen::mainScreen());
  UIActivityIndicatorView indicator(UIActivityIndicatorViewStyle::White, &parent);
  // In how many milliseconds it looks otherwise; none where it never does.
  const auto stepsAfter = [&]() -> int {
    const QImage before = indicator.grab().toImage();
    for (int milliseconds = 0; milliseconds < 200; ++milliseconds) {
      if (indicator.grab().toImage() != before) return milliseconds;
      HeldClock::turn(1);
      QCoreApplication::processEvents();
    }
    return 0;
  };
  setMotionEnabled(true);
  EXPECT_EQ(stepsAfter(), 0);
  parent.show();
  EXPECT_NEAR(stepsAfter(), 83, 5);
  parent.hide();
  EXPECT_FALSE(indicator.isTicking());
  parent.show();
  parent.hide();
  setMotionEnabled(false);
  parent.show();
  EXPECT_FALSE(indicator.isTicking());
}

}  // namespace
