// Whatever a dialog holds and however large the screen is: nothing is cut off, and the buttons are in sight.
#include "RQAlertView/RQAlertViewText.h"
#include "alert/Dialogs.h"
#include "platform/UIKeyboard.h"

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
    for (int line = 0; line < count; ++line) all << QString("A line of the message, number %1").arg(line);
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
  for (int index = 0; index < 10000; ++index) thousands << QString("Button %1").arg(index);
  const QStringList three{"A", "B", "A longer one, on its own line"};
  for (const QSize size :
       {QSize(320, 480), QSize(390, 844), QSize(844, 390), QSize(820, 1180), QSize(1600, 1200)}) {
    UIScreen::mainScreen()->resize(size);
    for (const auto style : {alertStyle, sheetStyle}) {
      for (const int messageLines : {0, 1, 40}) {
        for (const QStringList& buttons : {QStringList{}, QStringList{three[0]}, three, thousands}) {
          SCOPED_TRACE(std::to_string(size.width()) + "x" + std::to_string(size.height()) + " style " +
                       std::to_string(static_cast<int>(style)) + " lines " + std::to_string(messageLines) +
                       " buttons " + std::to_string(buttons.size()));
          const Dialog dialog = showing(
              withMessage(messageLines ? lines(messageLines) : none, style, buttons, "Cancel", "Delete"));
          QCoreApplication::processEvents();
          expectWhole(dialog);
          close(dialog);
        }
      }
    }
  }
}

TEST_F(Layout, FollowsTheScreenAndTheTextsWhileShown) {
  for (const Dialog& dialog : {alert({"A"}, "Cancel"), sheet({"A"}, "Cancel"), withFields(3)}) {
    dialog->show();
    for (const QSize size : {QSize(320, 480), QSize(820, 1180), QSize(1000, 600), QSize(390, 844)}) {
      resize(size.width(), size.height());
      expectWhole(dialog);
      const QPoint middle = inStage(frameOf(dialog), dialog).center();
      EXPECT_NEAR(middle.x(), size.width() / 2, 1);
      // Only on a phone is there a sheet at the bottom.
      const bool atTheBottom = dialog->style() == sheetStyle && size != QSize(820, 1180);
      EXPECT_EQ(std::abs(middle.y() - size.height() / 2) > 1, atTheBottom) << size.width();
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
    close(dialog);
  }
}

TEST_F(Layout, KeepsToTheLargestHeightThatWasSet) {
  const Dialog dialog = withMessage(lines(40));
  dialog->setHeightMax(300);
  dialog->show();
  EXPECT_EQ(frameOf(dialog)->height(), 300);
  expectWhole(dialog);
}

TEST_F(Layout, GivesWayToAKeyboardAndKeepsTheFieldBeingTypedInInSight) {
  UIKeyboard keyboard(nullptr);
  resize(320, 568);
  const Dialog dialog = showing(
      RQAlertView::alertViewWithTextFieldsAndTitle("Title", lines(6), 3, nullptr, {"OK"}, "Cancel", none));
  const QRect before = frameOf(dialog)->geometry();
  keyboard.setFrame({0, 568 - 260, 320, 260});
  EXPECT_LT(frameOf(dialog)->geometry().bottom(), 568 - 260);
  for (RQAlertViewTextField* field : dialog->textFieldsArray()) {
    field->setFocus();
    const auto* header = dialog->view()->findChild<QScrollArea*>();
    const QRect inViewport(field->mapTo(header->viewport(), QPoint()), field->size());
    EXPECT_TRUE(header->viewport()->rect().contains(inViewport)) << inViewport.y();
  }
  expectWhole(dialog);
  keyboard.setFrame({});
  EXPECT_EQ(frameOf(dialog)->geometry(), before);
}

}  // namespace
