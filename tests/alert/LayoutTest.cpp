// Whatever happens while a dialog is shown: nothing is cut off, and the buttons are in sight.
#include "alert/Dialogs.h"
#include "platform/UIKeyboard.h"

#include <QScrollArea>

namespace {

class Layout : public Dialogs {};

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

TEST_F(Layout, GivesWayToAKeyboardAndKeepsTheFieldBeingTypedInInSight) {
  UIKeyboard keyboard(nullptr);
  resize(320, 568);
  const Dialog dialog = showing("alert fields=3 buttons=OK cancel=Cancel message=" +
                                QString("A_line_of_the_message,_number_1\\n").repeated(6));
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
