// A dialog without a pointer: keys, focus, and the on-screen keyboard.
#include "alert/Dialogs.h"

#include <QScrollArea>
#include <QScrollBar>

namespace {

using testing::ElementsAre;

class Keys : public Dialogs {
 protected:
  static void press(Qt::Key key) { QTest::keyClick(focus(), key); }
  // What has the focus: a button's or row's title, or the number of a field.
  static std::string focused(const Dialog& dialog) {
    if (auto* button = qobject_cast<RQAlertViewButton*>(focus())) return button->title().toStdString();
    if (auto* list = qobject_cast<RQAlertViewButtonList*>(focus())) {
      const int row = list->currentIndex().row();
      return row < 0 ? "no row" : list->rows().at(row).title.toStdString();
    }
    const auto fields = dialog->textFieldsArray();
    for (std::size_t index = 0; index < fields.size(); ++index) {
      if (fields[index] == focus()) return "field " + std::to_string(index);
    }
    return "elsewhere";
  }
  static std::vector<std::string> round(const Dialog& dialog, Qt::Key key, int steps) {
    std::vector<std::string> places;
    for (int step = 0; step < steps; ++step) {
      press(key);
      places.push_back(focused(dialog));
    }
    return places;
  }
};

TEST_F(Keys, BeginAtTheSafeAnswer) {
  for (const auto& [dialog, place] :
       std::initializer_list<std::pair<Dialog, const char*>>{{alert({"A"}, "Cancel", "Delete"), "Cancel"},
                                                             {alert({"A"}, none, "Delete"), "A"},
                                                             {alert({"A", "B", "C"}, none, "Delete"), "A"},
                                                             {alert({"A", "B", "C"}, "Cancel"), "Cancel"},
                                                             {sheet({"A"}, "Cancel", "Delete"), "Cancel"}}) {
    dialog->show();
    EXPECT_EQ(focused(dialog), place);
    close(dialog);
  }
}

TEST_F(Keys, SkipRowsThatCannotBeTapped) {
  const QStringList titles{"A", "B", "C"};
  const Dialog dialog = sheet(titles, none, "Delete");
  dialog->setButtonEnabled(false, 0);
  listeningTo(dialog);
  EXPECT_EQ(focused(dialog), "B");
  close(dialog);

  // Where nothing safe can be tapped, Return does nothing until the user has chosen.
  const Dialog destructiveOnly = sheet(titles, none, "Delete");
  destructiveOnly->setButtonsEnabled(false);
  listeningTo(destructiveOnly);
  EXPECT_EQ(focused(destructiveOnly), "no row");
  press(Qt::Key_Return);
  EXPECT_THAT(answered(), ElementsAre());
  EXPECT_THAT(round(destructiveOnly, Qt::Key_Down, 1), ElementsAre("Delete"));
  press(Qt::Key_Return);
  EXPECT_THAT(answered(), ElementsAre("destroyed"));
  close(destructiveOnly);

  // The ends of the list are the first and the last row that can be tapped.
  const Dialog between = sheet(titles, "Cancel");
  between->setButtonEnabled(false, 0);
  between->setButtonEnabled(false, 2);
  between->show();
  for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Down, Qt::Key_Up})
    EXPECT_THAT(round(between, key, 2), ElementsAre("B", "Cancel"));
}

TEST_F(Keys, GoRoundInsideTheDialog) {
  const Dialog fields = showing(withFields(2));
  EXPECT_THAT(round(fields, Qt::Key_Tab, 4), ElementsAre("field 1", "Cancel", "OK", "field 0"));
  EXPECT_THAT(round(fields, Qt::Key_Backtab, 2), ElementsAre("OK", "Cancel"));
  EXPECT_THAT(round(fields, Qt::Key_Down, 2), ElementsAre("OK", "field 0"));
  EXPECT_THAT(round(fields, Qt::Key_Up, 1), ElementsAre("OK"));
  close(fields);

  const Dialog list = showing(sheet({"A", "B"}, "Cancel"));
  EXPECT_THAT(round(list, Qt::Key_Down, 4), ElementsAre("A", "B", "Cancel", "A"));
  EXPECT_THAT(round(list, Qt::Key_Up, 3), ElementsAre("Cancel", "B", "A"));
  EXPECT_THAT(round(list, Qt::Key_Tab, 2), ElementsAre("Cancel", "A"));
}

TEST_F(Keys, ScrollALongMessageAndGoOnAtItsEnds) {
  const Dialog dialog =
      withMessage(QString("Many words, all of them plain. ").repeated(200), alertStyle, {"OK"}, "Cancel");
  dialog->setShouldDismissAnimated(false);
  dialog->show();
  auto* message = dialog->view()->findChild<QScrollArea*>();
  EXPECT_THAT(round(dialog, Qt::Key_Tab, 3), ElementsAre("OK", "elsewhere", "Cancel"));
  press(Qt::Key_Backtab);
  ASSERT_EQ(focus(), message);
  press(Qt::Key_Down);
  EXPECT_GT(message->verticalScrollBar()->value(), 0);
  EXPECT_EQ(focus(), message);
  press(Qt::Key_Up);
  EXPECT_EQ(message->verticalScrollBar()->value(), 0);
  EXPECT_THAT(round(dialog, Qt::Key_Up, 1), ElementsAre("OK"));
  press(Qt::Key_Down);
  press(Qt::Key_PageDown);
  EXPECT_GT(message->verticalScrollBar()->value(), message->viewport()->height() / 2);
  message->verticalScrollBar()->setValue(message->verticalScrollBar()->maximum());
  EXPECT_THAT(round(dialog, Qt::Key_Down, 1), ElementsAre("Cancel"));
  message->setFocus();
  press(Qt::Key_Escape);
  EXPECT_EQ(dialog->state(), RQAlertViewState::Dismissed);
}

TEST_F(Keys, StayInsideWhereTheFocusedButtonGoesAway) {
  // A row becomes a list, a list takes the cancel button in, and every button is disabled.
  const Dialog row = showing(alert({"A"}, "Cancel"));
  row->setOneRowOneButton(true);
  letGo();
  EXPECT_TRUE(frameOf(row)->isAncestorOf(focus()));
  close(row);

  const Dialog bottom = showing(sheet({"A"}, "Cancel"));
  resize(820, 1180);
  EXPECT_TRUE(frameOf(bottom)->isAncestorOf(focus()));
  close(bottom);

  const Dialog disabled = listeningTo(alert({"A"}, "Cancel"));
  disabled->setCancelButtonEnabled(false);
  EXPECT_EQ(focused(disabled), "A");
  disabled->setButtonsEnabled(false);
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape})
    QTest::keyClick(UIScreen::mainScreen()->windowHandle(), key);
  EXPECT_THAT(answered(), ElementsAre());
  disabled->setCancelButtonEnabled(true);
  QTest::keyClick(UIScreen::mainScreen()->windowHandle(), Qt::Key_Escape);
  EXPECT_THAT(answered(), ElementsAre("cancelled"));
}

TEST_F(Keys, PressTheFocusedButtonAndCancelWithEscape) {
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Enter}) {
    for (const Dialog& dialog : {alert({"A"}, "Cancel"), sheet({"A"}, "Cancel")}) {
      listeningTo(dialog);
      press(key);
      press(Qt::Key_Tab);
      press(key);
      press(Qt::Key_Escape);
      EXPECT_THAT(answered(), ElementsAre("cancelled", "A", "cancelled"));
      close(dialog);
    }
  }
  const Dialog fields = listeningTo(withFields(1));
  QTest::keyClick(UIScreen::mainScreen()->windowHandle(), Qt::Key_A);
  press(Qt::Key_Escape);
  EXPECT_THAT(answered(), ElementsAre("cancelled"));
  EXPECT_EQ(fields->textFieldsArray()[0]->text() + "/" + appField->text(), "a/") << "not what is behind";
  close(fields);
  const Dialog without = listeningTo(alert({"A"}));
  press(Qt::Key_Escape);
  EXPECT_THAT(answered(), ElementsAre());
}

// A key that is held down was pressed for what had the focus before the dialog.
TEST_F(Keys, ThatAreHeldDownAnswerNothing) {
  for (const Dialog& dialog : {alert({"A"}), alert({"A", "B", "C"}), alert({"A", "B", "C"}, "Cancel"),
                               sheet({"A"}, "Cancel"), sheet({"A"}), withFields(1)}) {
    listeningTo(dialog);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
      for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease, QEvent::KeyPress}) {
        QKeyEvent repeated(type, key, {}, key == Qt::Key_Space ? " " : "\r", true);
        QCoreApplication::sendEvent(focus(), &repeated);
      }
      QTest::keyRelease(focus(), key);
      EXPECT_THAT(answered(), ElementsAre()) << key;
    }
    press(Qt::Key_Return);
    EXPECT_EQ(answered().size(), 1U);
    close(dialog);
  }
}

TEST_F(Keys, GoThroughTheFieldsWithReturnAndPressTheOnlyButton) {
  for (const QStringList& buttons : {QStringList{"OK"}, QStringList{"OK", "Other"}}) {
    const Dialog dialog = listeningTo(withFields(2, buttons));
    press(Qt::Key_Return);
    EXPECT_EQ(focused(dialog), "field 1");
    EXPECT_THAT(answered(), ElementsAre());
    press(Qt::Key_Return);
    EXPECT_EQ(answered().size(), buttons.size() == 1 ? 1U : 0U);
    dialog->setButtonEnabled(false, 0);
    press(Qt::Key_Return);
    EXPECT_THAT(answered(), ElementsAre());
    close(dialog);
  }
}

}  // namespace
