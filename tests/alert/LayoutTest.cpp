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
  static QString lines(int count) { return QString("A_line_of_the_message,_number_1\\n").repeated(count); }

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
      EXPECT_GE(list->height(), row) << "no row is in sight";
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
  for (int index = 0; index < 10000; ++index) thousands << QString::number(index);
  for (const QSize size :
       {QSize(320, 480), QSize(390, 844), QSize(844, 390), QSize(820, 1180), QSize(1600, 1200)}) {
    UIScreen::mainScreen()->resize(size);
    for (const char* style : {"alert", "sheet"}) {
      for (const int messageLines : {0, 1, 40}) {
        for (const QString& buttons :
             {QString(), QString(" buttons=A"), QString(" buttons=A,B,Longer_than_a_line"),
              " buttons=" + thousands.join(',')}) {
          const QString description =
              style + buttons + " cancel=Cancel destructive=Delete message=" + lines(messageLines);
          SCOPED_TRACE(std::to_string(size.width()) + " " + description.left(30).toStdString() +
                       std::to_string(messageLines));
          const Dialog dialog = showing(description);
          QCoreApplication::processEvents();
          expectWhole(dialog);
          close(dialog);
        }
      }
    }
  }
}

TEST_F(Layout, FollowsTheScreenAndTheTextsWhileShown) {
  for (const char* description :
       {"alert buttons=A cancel=Cancel", "sheet buttons=A cancel=Cancel", "alert fields=3 buttons=OK"}) {
    const Dialog dialog = showing(description);
    for (const QSize size : {QSize(320, 480), QSize(820, 1180), QSize(1000, 600), QSize(390, 844)}) {
      resize(size.width(), size.height());
      expectWhole(dialog);
      const QPoint middle = inStage(frameOf(dialog), dialog).center();
      EXPECT_NEAR(middle.x(), size.width() / 2, 1);
      // Only on a phone is there a sheet at the bottom.
      const bool atTheBottom = dialog->style() == RQAlertViewStyle::ActionSheet && size != QSize(820, 1180);
      EXPECT_EQ(std::abs(middle.y() - size.height() / 2) > 1, atTheBottom) << size.width();
    }
    const int before = frameOf(dialog)->height();
    change(*dialog, "titleFont=32 messageFont=32 buttonsFont=32 cancelButtonFont=32 textFieldsFont=32");
    EXPECT_GT(frameOf(dialog)->height(), before);
    expectWhole(dialog);
    close(dialog);
  }
}

TEST_F(Layout, GivesAViewOfTheApplicationsItsHeightAndDestroysItWithTheDialog) {
  const Dialog dialog = showing("alert view=77 buttons=OK");
  const QPointer<QWidget> view(dialog->innerView());
  EXPECT_TRUE(view->isVisible());
  EXPECT_EQ(view->height(), 77);
  close(dialog);
  EXPECT_TRUE(view.isNull());
  EXPECT_EQ(dialog->innerView(), nullptr);
}

TEST_F(Layout, GivesWayToAKeyboardAndKeepsTheFieldBeingTypedInInSight) {
  UIKeyboard keyboard(nullptr);
  resize(320, 568);
  const Dialog dialog = showing("alert fields=3 buttons=OK cancel=Cancel message=" + lines(6));
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
