// What the tests of dialogs share: an application window behind them, and a finger to tap their buttons.
#pragma once

#include "RQAlertView/RQAlertViewBox.h"
#include "RQAlertView/RQAlertViewController.h"
#include "RQAlertView/RQAlertViewText.h"
#include "RQAlertView/RQAlertViewWindowsObserver.h"
#include "alert/Describe.h"
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
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

class Dialogs : public testing::Test {
 protected:
  void SetUp() override {
    UIScreen::mainScreen()->resize(390, 844);
    appField = new QLineEdit(appController->view());
    appField->setAccessibleName("Behind");
    appWindow->setRootViewController(appController);
    appWindow->makeKeyAndVisible();
    ASSERT_TRUE(QTest::qWaitForWindowActive(UIScreen::mainScreen()));
    appField->setFocus();
  }
  void TearDown() override {
    setMotionEnabled(false);
    UIApplication::setLayoutDirection(Qt::LeftToRight);
    RQAlertView::resetAppearance();
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

  static Dialog showing(const Dialog& dialog) {
    dialog->show();
    return dialog;
  }
  static Dialog showing(const QString& description) { return showing(dialogFrom(description)); }
  static void close(const Dialog& dialog) {
    dialog->dismiss();
    letGo();
  }
  static void resize(int width, int height) {
    UIScreen::mainScreen()->resize(width, height);
    letGo();
  }

  // Of the dialog, where it is shown, else null.
  template <typename Part>
  static Part* partOf(const Dialog& dialog) {
    Part* part = dialog->view() ? dialog->view()->findChild<Part*>() : nullptr;
    return part && !part->isHidden() ? part : nullptr;
  }
  static RQAlertViewBox* frameOf(const Dialog& dialog) {
    return dialog->view()->findChild<RQAlertViewBox*>();
  }
  static RQAlertViewButtonList* listOf(const Dialog& dialog) { return partOf<RQAlertViewButtonList>(dialog); }
  static RQAlertViewButton* buttonOf(const Dialog& dialog, const QString& title) {
    for (auto* button : dialog->view()->findChildren<RQAlertViewButton*>()) {
      if (button->title() == title && !button->isHidden()) return button;
    }
    return nullptr;
  }
  // The button or row with the title, as a widget and a place in it.
  static std::pair<QWidget*, QRect> placeOf(const Dialog& dialog, const QString& title) {
    if (auto* button = buttonOf(dialog, title)) return {button, button->rect()};
    RQAlertViewButtonList* list = listOf(dialog);
    for (int row = 0; list && row < list->rows().count(); ++row) {
      if (list->rows().at(row).title == title)
        return {list->viewport(), list->visualRect(list->model()->index(row, 0))};
    }
    ADD_FAILURE() << "no button " << title.toStdString();
    return {dialog->view(), {}};
  }
  static QRect inStage(const QWidget* part, const Dialog& dialog) {
    return {part->mapTo(dialog->view(), QPoint()), part->size()};
  }
  // Everything inside the screen and inside the box, the texts as high as they need or in an area that
  // scrolls.
  static void expectWhole(const Dialog& dialog) {
    const QRect screen = dialog->view()->rect();
    const QRect box = inStage(frameOf(dialog), dialog);
    // Only a shadow may reach out of the screen.
    const int shadow = dialog->layerShadowRadius() > 0 ? 24 : 0;
    EXPECT_TRUE(screen.contains(box.adjusted(shadow, shadow, -shadow, -shadow)))
        << box.width() << "x" << box.height();
    for (auto* button : dialog->view()->findChildren<RQAlertViewButton*>()) {
      if (button->isHidden()) continue;
      EXPECT_TRUE(box.contains(inStage(button, dialog)));
      EXPECT_GE(button->height(), 30);
    }
    if (auto* list = listOf(dialog)) {
      EXPECT_TRUE(box.contains(inStage(list, dialog)));
      const int row = list->visualRect(list->model()->index(0, 0)).height();
      EXPECT_GE(list->height(), row) << "no row is in sight";
      if (list->verticalScrollBar()->maximum() > 0 && list->height() > 2 * row) {
        const QRect last = list->visualRect(list->indexAt({0, list->height() - 1}));
        EXPECT_NEAR(list->height() - last.y(), last.height() / 2, 2) << "it does not look as if it went on";
      }
    }
    const auto* header = dialog->view()->findChild<QScrollArea*>();
    for (auto* label : dialog->view()->findChildren<RQAlertViewLabel*>()) {
      if (label->isHidden()) continue;
      EXPECT_GE(label->height(), label->heightForWidth(label->width()));
      EXPECT_LE(label->geometry().bottom(), header->widget()->height());
    }
    EXPECT_EQ(header->widget()->height() > header->viewport()->height(),
              header->verticalScrollBar()->maximum() > 0);
  }
  static void tap(const Dialog& dialog, const QString& title) {
    const auto [widget, place] = placeOf(dialog, title);
    // Through whatever lies above it.
    QTest::mouseClick(UIScreen::mainScreen()->windowHandle(), Qt::LeftButton, {},
                      widget->mapTo(UIScreen::mainScreen(), place.center()));
  }

  static UIWindow* keyWindow() { return UIApplication::sharedApplication()->keyWindow(); }
  static QWidget* focus() { return UIScreen::mainScreen()->focusWidget(); }

  std::shared_ptr<UIViewController> appController = std::make_shared<UIViewController>();
  std::shared_ptr<UIWindow> appWindow = makeUIWindow();
  QLineEdit* appField = nullptr;
};
