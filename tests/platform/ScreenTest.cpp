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

TEST(Windows, TakeKeysAndShortcutsFromTheOneBelowAndGiveThemBack) {
  const auto lower = makeUIWindow();
  const auto upper = makeUIWindow(UIWindowLevelAlert);
  for (const auto& window : {lower, upper})
    window->setRootViewController(std::make_shared<UIViewController>());
  auto* const field = new QLineEdit(lower->rootViewController()->view());
  lower->makeKeyAndVisible();
  ASSERT_TRUE(QTest::qWaitForWindowActive(UIScreen::mainScreen()));
  field->setFocus();
  int shortcuts = 0;
  auto* shortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_B), lower.get());
  QObject::connect(shortcut, &QShortcut::activated, lower.get(), [&] { ++shortcuts; });
  const auto press = [] {
    QTest::keyClick(UIScreen::mainScreen()->windowHandle(), Qt::Key_B, Qt::ControlModifier);
  };
  upper->makeKeyAndVisible();
  EXPECT_TRUE(QAccessible::queryAccessibleInterface(field)->state().disabled);
  press();
  EXPECT_EQ(shortcuts, 0);
  upper->setHidden(true);
  EXPECT_EQ(UIScreen::mainScreen()->focusWidget(), field);
  press();
  EXPECT_EQ(shortcuts, 1);
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
  const QImage first = indicator.grab().toImage();
  EXPECT_NEAR(stepsAfter(), 83, 5);
  for (int step = 2; step <= 12; ++step) EXPECT_GT(stepsAfter(), 0);
  EXPECT_EQ(indicator.grab().toImage(), first) << "once around";
  parent.hide();
  EXPECT_FALSE(indicator.isTicking());
  parent.show();
  parent.hide();
  setMotionEnabled(false);
  parent.show();
  EXPECT_FALSE(indicator.isTicking());
}

}  // namespace
