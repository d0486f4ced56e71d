// Whatever a dialog holds and however large the screen is: nothing is cut off, and the buttons are in sight.
#include "RQAlertView/RQAlertViewLabel.h"
#include "alert/Dialogs.h"
#include "platform/UIKeyboard.h"

#include <QElapsedTimer>
#include <QScrollArea>
#include <QScrollBar>

namespace {

class Layout : public Dialogs {
 protected:
  static QRect inStage(const QWidget* part, const Dialog& dialog) {
    return {part->mapTo(dialog->view(), QPoint()), part->size()};
  }

  static QString lines(int count) {
    QStringList all;
    for (int line = 0; line < count; ++line)
      all << QStringLiteral("A line of the message, number %1").arg(line);
    return all.join(u'\n');
  }

  // Everything inside the screen and inside the box, the texts as high as they need or in an area that
  // scrolls.
  static void expectWhole(const Dialog& dialog) {
    const QRect screen = dialog->view()->rect();
    const QRect box = inStage(frameOf(dialog), dialog);
    EXPECT_TRUE(screen.contains(box)) << box.width() << "x" << box.height();
    for (auto* button : dialog->view()->findChildren<RQAlertViewButton*>()) {
      if (button->isHidden()) continue;
      EXPECT_TRUE(box.contains(inStage(button, dialog)));
      EXPECT_GE(button->height(), 30);
    }
    if (auto* list = listOf(dialog)) {
      EXPECT_TRUE(box.contains(inStage(list, dialog)));
      const int row = list->visualRect(list->model()->index(0, 0)).height();
      EXPECT_GE(list->height(), std::min(row * list->rows().count(), row)) << "no row is in sight";
      if (list->height() < row * list->rows().count() && list->height() > 2 * row) {
        EXPECT_NEAR(list->height() % row, row / 2, 2) << "the list does not look as if it went on";
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
};

TEST_F(Layout, ReadsNaturallyAtEverySizeWithAnyNumberOfButtons) {
  QStringList thousands;
  for (int index = 0; index < 10000; ++index) thousands << QStringLiteral("Button %1").arg(index);
  const QStringList three{QStringLiteral("A"), QStringLiteral("B"),
                          QStringLiteral("A longer one, on its own line")};
  for (const QSize size :
       {QSize(320, 480), QSize(390, 844), QSize(844, 390), QSize(820, 1180), QSize(1600, 1200)}) {
    UIScreen::mainScreen()->resize(size);
    for (const auto style : {alertStyle, sheetStyle}) {
      for (const int messageLines : {0, 1, 40}) {
        for (const QStringList& buttons : {QStringList{}, QStringList{three[0]}, three, thousands}) {
          SCOPED_TRACE(std::to_string(size.width()) + "x" + std::to_string(size.height()) + " style " +
                       std::to_string(static_cast<int>(style)) + " lines " + std::to_string(messageLines) +
                       " buttons " + std::to_string(buttons.size()));
          const Dialog dialog = RQAlertView::alertViewWithTitle(
              QStringLiteral("Title"), messageLines ? lines(messageLines) : none, style, buttons,
              QStringLiteral("Cancel"), QStringLiteral("Delete"));
          dialog->show();
          QCoreApplication::processEvents();
          expectWhole(dialog);
          dialog->dismiss();
          letGo();
        }
      }
    }
  }
}

TEST_F(Layout, FollowsTheScreenAndTheTextsWhileShown) {
  for (const Dialog& dialog : {alert({QStringLiteral("A")}, QStringLiteral("Cancel")),
                               sheet({QStringLiteral("A")}, QStringLiteral("Cancel")), withFields(3)}) {
    dialog->show();
    for (const QSize size : {QSize(320, 480), QSize(1000, 600), QSize(390, 844)}) {
      UIScreen::mainScreen()->resize(size);
      QCoreApplication::processEvents();
      expectWhole(dialog);
      const QRect box = inStage(frameOf(dialog), dialog);
      EXPECT_LE(std::abs(box.center().x() - size.width() / 2), 1);
    }
    const int before = frameOf(dialog)->height();
    QFont large = dialog->messageFont();
    large.setPointSizeF(24);
    dialog->setTitleFont(large);
    dialog->setMessageFont(large);
    dialog->setButtonsFont(large);
    dialog->setCancelButtonFont(large);
    dialog->setTextFieldsFont(large);
    EXPECT_GT(frameOf(dialog)->height(), before);
    expectWhole(dialog);
    dialog->dismiss();
    letGo();
  }
}

TEST_F(Layout, PutsAPhonesSheetAtTheBottomAndEverythingElseInTheMiddle) {
  const Dialog bottom = sheet({QStringLiteral("A")}, QStringLiteral("Cancel"));
  bottom->show();
  EXPECT_EQ(frameOf(bottom)->geometry().bottom(), 844 - 8 - 1);
  EXPECT_EQ(frameOf(bottom)->width(), 390 - 16);
  const RQAlertViewButton* cancel = buttonOf(bottom, QStringLiteral("Cancel"));
  EXPECT_EQ(inStage(cancel, bottom).top() - inStage(listOf(bottom), bottom).bottom() - 1, 8);
  UIScreen::mainScreen()->resize(820, 1180);
  QCoreApplication::processEvents();
  EXPECT_LE(std::abs(frameOf(bottom)->geometry().center().y() - 590), 1);
  bottom->dismiss();
}

TEST_F(Layout, KeepsToTheLargestHeightThatWasSet) {
  const Dialog dialog = RQAlertView::alertViewWithTitle(QStringLiteral("Title"), lines(40), alertStyle,
                                                        {QStringLiteral("OK")}, none, none);
  dialog->setHeightMax(300);
  dialog->show();
  EXPECT_EQ(frameOf(dialog)->height(), 300);
  expectWhole(dialog);
  dialog->dismiss();
}

TEST_F(Layout, KeepsTheFieldBeingTypedInInSightAboveAKeyboard) {
  UIKeyboard keyboard(nullptr);
  UIScreen::mainScreen()->resize(320, 568);
  const Dialog dialog = RQAlertView::alertViewWithTextFieldsAndTitle(
      QStringLiteral("Title"), lines(6), 3, nullptr, {QStringLiteral("OK")}, QStringLiteral("Cancel"), none);
  dialog->show();
  keyboard.setFrame({0, 568 - 260, 320, 260});
  for (RQAlertViewTextField* field : dialog->textFieldsArray()) {
    field->setFocus();
    const auto* header = dialog->view()->findChild<QScrollArea*>();
    const QRect inViewport(field->mapTo(header->viewport(), QPoint()), field->size());
    EXPECT_TRUE(header->viewport()->rect().contains(inViewport)) << inViewport.y();
  }
  expectWhole(dialog);
  dialog->dismiss();
  keyboard.setFrame({});
}

TEST_F(Layout, OpensAHundredThousandButtonsAtOnce) {
  QStringList titles;
  for (int index = 0; index < 100000; ++index) titles << QStringLiteral("Button %1").arg(index);
  const auto opening = [&](const QStringList& buttons) {
    QElapsedTimer timer;
    timer.start();
    const Dialog dialog = sheet(buttons, QStringLiteral("Cancel"));
    dialog->show();
    dialog->view()->grab();
    const auto taken = timer.nsecsElapsed();
    dialog->dismiss();
    letGo();
    return taken;
  };
  opening(titles.mid(0, 20));
  // Far from what it would take to look at every title; the bench has the exact figures.
  EXPECT_LT(opening(titles), 20 * opening(titles.mid(0, 20)) + 50'000'000);
}

TEST_F(Layout, TakesAVeryLongMessageInItsStride) {
  const QString message = QStringLiteral("Many words, all of them plain. ").repeated(3300);
  const Dialog dialog = RQAlertView::alertViewWithTitle(QStringLiteral("Title"), message, alertStyle,
                                                        {QStringLiteral("OK")}, none, none);
  dialog->show();
  expectWhole(dialog);
  auto* header = dialog->view()->findChild<QScrollArea*>();
  header->verticalScrollBar()->setValue(header->verticalScrollBar()->maximum());
  EXPECT_GT(header->verticalScrollBar()->value(), 10000);
  dialog->view()->grab();
  dialog->dismiss();
}

}  // namespace
