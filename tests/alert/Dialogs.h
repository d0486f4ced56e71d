// What the tests of dialogs share: an application window behind them, and a finger to tap their buttons.
#pragma once

#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewBox.h"
#include "RQAlertView/RQAlertViewButton.h"
#include "RQAlertView/RQAlertViewButtonList.h"
#include "RQAlertView/RQAlertViewController.h"
#include "RQAlertView/RQAlertViewWindowsObserver.h"
#include "platform/NSNotificationCenter.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "platform/UIViewController.h"
#include "platform/UIWindow.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <QLineEdit>
#include <QListView>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Dialog = std::shared_ptr<RQAlertView>;

inline constexpr auto alertStyle = RQAlertViewStyle::Alert;
inline constexpr auto sheetStyle = RQAlertViewStyle::ActionSheet;
inline const QString none;

class Dialogs : public testing::Test {
 protected:
  void SetUp() override {
    UIScreen::mainScreen()->resize(390, 844);
    appField = new QLineEdit(appController->view());
    appWindow->setRootViewController(appController);
    appWindow->makeKeyAndVisible();
    ASSERT_TRUE(QTest::qWaitForWindowActive(UIScreen::mainScreen()));
    appField->setFocus();
  }
  void TearDown() override {
    setMotionEnabled(false);
    UIApplication::setLayoutDirection(Qt::LeftToRight);
    // What a test leaves on the screen does not reach the next one.
    const auto left = RQAlertViewWindowsObserver::sharedInstance()->windowsArray();
    for (const RQAlertViewWindowContainer& container : left) {
      const auto window = container.window();
      if (!window) continue;
      qobject_cast<RQAlertViewController*>(window->rootViewController().get())->alertView()->dismiss();
    }
    letGo();
  }

  // Lets the event loop take the steps that are queued, and destroy what waits for it.
  static void letGo() {
    for (int turn = 0; turn < 3; ++turn) {
      QCoreApplication::processEvents();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
  }

  static Dialog alert(const QStringList& buttons = {"One"}, const QString& cancel = none,
                      const QString& destructive = none) {
    return RQAlertView::alertViewWithTitle("Title", "Message", alertStyle, buttons, cancel, destructive);
  }
  static Dialog sheet(const QStringList& buttons, const QString& cancel = none,
                      const QString& destructive = none) {
    return RQAlertView::alertViewWithTitle("Title", "Message", sheetStyle, buttons, cancel, destructive);
  }
  static Dialog withMessage(const QString& message, RQAlertViewStyle style = alertStyle,
                            const QStringList& buttons = {"OK"}, const QString& cancel = none,
                            const QString& destructive = none) {
    return RQAlertView::alertViewWithTitle("Title", message, style, buttons, cancel, destructive);
  }
  static Dialog waiting(const QString& label = none, const QStringList& buttons = {},
                        const QString& cancel = none) {
    return RQAlertView::alertViewWithActivityIndicatorAndTitle("Title", none, alertStyle, label, buttons,
                                                               cancel, none);
  }
  static Dialog withFields(std::size_t number, const QStringList& buttons = {"OK"}) {
    return RQAlertView::alertViewWithTextFieldsAndTitle("Title", none, number, nullptr, buttons, "Cancel",
                                                        none);
  }

  static Dialog showing(const Dialog& dialog) {
    dialog->show();
    return dialog;
  }
  // Keeps it open too, and writes its answers down.
  Dialog listeningTo(const Dialog& dialog) {
    dialog->setDismissOnAction(false);
    dialog->setActionHandler(
        [this](RQAlertView&, std::size_t, const QString& title) { heard.push_back(title.toStdString()); });
    dialog->setCancelHandler([this](RQAlertView&) { heard.emplace_back("cancelled"); });
    dialog->setDestructiveHandler([this](RQAlertView&) { heard.emplace_back("destroyed"); });
    return showing(dialog);
  }
  // What has been answered since the last call.
  std::vector<std::string> answered() { return std::exchange(heard, {}); }

  static void close(const Dialog& dialog) {
    dialog->dismiss();
    letGo();
  }
  static bool becomes(const Dialog& dialog, RQAlertViewState state) {
    return QTest::qWaitFor([&] { return dialog->state() == state; });
  }
  static void resize(int width, int height) {
    UIScreen::mainScreen()->resize(width, height);
    letGo();
  }

  static RQAlertViewBox* frameOf(const Dialog& dialog) {
    return dialog->view() ? dialog->view()->findChild<RQAlertViewBox*>() : nullptr;
  }
  static RQAlertViewButtonList* listOf(const Dialog& dialog) {
    auto* list = dialog->view()->findChild<RQAlertViewButtonList*>();
    return list && !list->isHidden() ? list : nullptr;
  }
  static RQAlertViewButton* buttonOf(const Dialog& dialog, const QString& title) {
    for (auto* button : dialog->view()->findChildren<RQAlertViewButton*>()) {
      if (button->title() == title && !button->isHidden()) return button;
    }
    return nullptr;
  }

  // Taps what bears the title, be it a button or a row.
  static void tap(const Dialog& dialog, const QString& title) {
    if (auto* button = buttonOf(dialog, title)) {
      QTest::mouseClick(button, Qt::LeftButton);
      return;
    }
    RQAlertViewButtonList* list = listOf(dialog);
    ASSERT_TRUE(list) << "there is nothing to tap";
    for (int row = 0; row < list->rows().count(); ++row) {
      if (list->rows().at(row).title != title) continue;
      const QModelIndex index = list->model()->index(row, 0);
      list->scrollTo(index);
      QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(index).center());
      return;
    }
    FAIL() << "no button " << title.toStdString();
  }

  static UIWindow* keyWindow() { return UIApplication::sharedApplication()->keyWindow(); }
  static QWidget* focus() { return UIScreen::mainScreen()->focusWidget(); }

  std::shared_ptr<UIViewController> appController = std::make_shared<UIViewController>();
  std::shared_ptr<UIWindow> appWindow = makeUIWindow();
  QLineEdit* appField = nullptr;
  std::vector<std::string> heard;
};
