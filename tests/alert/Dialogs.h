// What the tests of dialogs share: an application window behind them, and a finger to tap their buttons.
#pragma once

#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewButton.h"
#include "RQAlertView/RQAlertViewButtonList.h"
#include "RQAlertView/RQAlertViewFrame.h"
#include "RQAlertView/RQAlertViewWindow.h"
#include "platform/Motion.h"
#include "platform/NSNotificationCenter.h"
#include "platform/UIApplication.h"
#include "platform/UIScreen.h"
#include "platform/UIViewController.h"
#include "platform/UIWindow.h"

#include <memory>
#include <string>
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
    letGo();
  }

  // Lets the event loop take the steps that are queued, and destroy what waits for it.
  static void letGo() {
    for (int turn = 0; turn < 3; ++turn) {
      QCoreApplication::processEvents();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
  }

  static Dialog alert(const QStringList& buttons = {QStringLiteral("One")}, const QString& cancel = none,
                      const QString& destructive = none) {
    return RQAlertView::alertViewWithTitle(QStringLiteral("Title"), QStringLiteral("Message"), alertStyle,
                                           buttons, cancel, destructive);
  }
  static Dialog sheet(const QStringList& buttons, const QString& cancel = none,
                      const QString& destructive = none) {
    return RQAlertView::alertViewWithTitle(QStringLiteral("Title"), QStringLiteral("Message"), sheetStyle,
                                           buttons, cancel, destructive);
  }
  static Dialog withFields(std::size_t number, const QStringList& buttons = {QStringLiteral("OK")}) {
    return RQAlertView::alertViewWithTextFieldsAndTitle(QStringLiteral("Title"), none, number, nullptr,
                                                        buttons, QStringLiteral("Cancel"), none);
  }

  static RQAlertViewFrame* frameOf(const Dialog& dialog) {
    return dialog->view() ? dialog->view()->findChild<RQAlertViewFrame*>() : nullptr;
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
};
