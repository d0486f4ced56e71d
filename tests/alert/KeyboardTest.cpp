// A dialog without a pointer: keys, focus, and the on-screen keyboard.
#include "alert/Dialogs.h"
#include "platform/UIKeyboard.h"

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
  const QString cancel = QStringLiteral("Cancel");
  const QString destructive = QStringLiteral("Delete");
  const Dialog row = alert({QStringLiteral("A")}, cancel, destructive);
  row->show();
  EXPECT_EQ(focused(row), "Cancel");
  row->dismiss();
  const Dialog unsafe = alert({QStringLiteral("A")}, none, destructive);
  unsafe->show();
  EXPECT_EQ(focused(unsafe), "A");
  unsafe->dismiss();
  const Dialog list =
      alert({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")}, none, destructive);
  list->show();
  EXPECT_EQ(focused(list), "A");
  list->dismiss();
  const Dialog bottom = sheet({QStringLiteral("A")}, cancel, destructive);
  bottom->show();
  EXPECT_EQ(focused(bottom), "Cancel");
  bottom->dismiss();
}

TEST_F(Keys, SkipRowsThatCannotBeTapped) {
  const QStringList titles{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")};
  const Dialog dialog = sheet(titles, none, QStringLiteral("Delete"));
  dialog->setDismissOnAction(false);
  int destroyed = 0;
  dialog->setDestructiveHandler([&](RQAlertView&) { ++destroyed; });
  dialog->setButtonEnabled(false, 0);
  dialog->show();
  EXPECT_EQ(focused(dialog), "B");
  // Where nothing safe can be tapped, Return does nothing until the user has chosen.
  dialog->setButtonsEnabled(false);
  appField->setFocus();
  listOf(dialog)->setCurrentIndex({});
  listOf(dialog)->setFocus(Qt::OtherFocusReason);
  EXPECT_EQ(focused(dialog), "no row");
  press(Qt::Key_Return);
  EXPECT_EQ(destroyed, 0);
  EXPECT_THAT(round(dialog, Qt::Key_Down, 1), ElementsAre("Delete"));
  press(Qt::Key_Return);
  EXPECT_EQ(destroyed, 1);
  dialog->dismiss();
  letGo();

  const Dialog destructiveOnly = sheet(titles, none, QStringLiteral("Delete"));
  destructiveOnly->setButtonsEnabled(false);
  destructiveOnly->show();
  EXPECT_EQ(focused(destructiveOnly), "no row");
  destructiveOnly->dismiss();
  letGo();

  // The ends of the list are the first and the last row that can be tapped.
  const Dialog between = sheet(titles, QStringLiteral("Cancel"));
  between->setButtonEnabled(false, 0);
  between->setButtonEnabled(false, 2);
  between->show();
  EXPECT_THAT(round(between, Qt::Key_Tab, 2), ElementsAre("B", "Cancel"));
  EXPECT_THAT(round(between, Qt::Key_Backtab, 2), ElementsAre("B", "Cancel"));
  EXPECT_THAT(round(between, Qt::Key_Down, 2), ElementsAre("B", "Cancel"));
  EXPECT_THAT(round(between, Qt::Key_Up, 2), ElementsAre("B", "Cancel"));
  between->dismiss();
}

TEST_F(Keys, GoRoundInsideTheDialog) {
  const Dialog fields = withFields(2);
  fields->show();
  EXPECT_THAT(round(fields, Qt::Key_Tab, 4), ElementsAre("field 1", "Cancel", "OK", "field 0"));
  EXPECT_THAT(round(fields, Qt::Key_Backtab, 2), ElementsAre("OK", "Cancel"));
  EXPECT_THAT(round(fields, Qt::Key_Down, 2), ElementsAre("OK", "field 0"));
  EXPECT_THAT(round(fields, Qt::Key_Up, 1), ElementsAre("OK"));
  fields->dismiss();

  const Dialog list = sheet({QStringLiteral("A"), QStringLiteral("B")}, QStringLiteral("Cancel"));
  list->show();
  EXPECT_THAT(round(list, Qt::Key_Down, 4), ElementsAre("A", "B", "Cancel", "A"));
  EXPECT_THAT(round(list, Qt::Key_Up, 3), ElementsAre("Cancel", "B", "A"));
  EXPECT_THAT(round(list, Qt::Key_Tab, 2), ElementsAre("Cancel", "A"));
  list->dismiss();
}

TEST_F(Keys, ScrollALongMessageAndGoOnAtItsEnds) {
  const Dialog dialog = RQAlertView::alertViewWithTitle(
      QStringLiteral("Title"), QStringLiteral("Many words, all of them plain. ").repeated(200), alertStyle,
      {QStringLiteral("OK")}, QStringLiteral("Cancel"), none);
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
  const QString cancel = QStringLiteral("Cancel");
  // A row becomes a list, a list takes the cancel button in, and every button is disabled.
  const Dialog row = alert({QStringLiteral("A")}, cancel);
  row->show();
  ASSERT_EQ(focused(row), "Cancel");
  row->setOneRowOneButton(true);
  letGo();
  EXPECT_TRUE(frameOf(row)->isAncestorOf(focus()));
  row->dismiss();
  letGo();

  const Dialog bottom = sheet({QStringLiteral("A")}, cancel);
  bottom->show();
  ASSERT_EQ(focused(bottom), "Cancel");
  UIScreen::mainScreen()->resize(820, 1180);
  letGo();
  EXPECT_TRUE(frameOf(bottom)->isAncestorOf(focus()));
  bottom->dismiss();
  letGo();

  const Dialog disabled = alert({QStringLiteral("A")}, cancel);
  disabled->setShouldDismissAnimated(false);
  disabled->show();
  disabled->setCancelButtonEnabled(false);
  EXPECT_EQ(focused(disabled), "A");
  disabled->setButtonsEnabled(false);
  QTest::keyClick(UIScreen::mainScreen()->windowHandle(), Qt::Key_Return);
  EXPECT_TRUE(disabled->isShowing());
  disabled->setCancelButtonEnabled(true);
  QTest::keyClick(UIScreen::mainScreen()->windowHandle(), Qt::Key_Escape);
  EXPECT_FALSE(disabled->isShowing());
}

TEST_F(Keys, PressTheFocusedButtonWithReturnAndSpace) {
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Enter}) {
    for (const Dialog& dialog : {alert({QStringLiteral("A")}, QStringLiteral("Cancel")),
                                 sheet({QStringLiteral("A")}, QStringLiteral("Cancel"))}) {
      dialog->setDismissOnAction(false);
      std::vector<std::string> heard;
      dialog->setActionHandler(
          [&](RQAlertView&, std::size_t, const QString& title) { heard.push_back(title.toStdString()); });
      dialog->setCancelHandler([&](RQAlertView&) { heard.push_back("cancelled"); });
      dialog->show();
      press(key);
      press(Qt::Key_Tab);
      press(key);
      EXPECT_THAT(heard, ElementsAre("cancelled", "A"));
      dialog->dismiss();
      letGo();
    }
  }
}

TEST_F(Keys, CancelWithEscapeWhereThereIsAnEnabledCancelButton) {
  for (const bool hasCancel : {false, true}) {
    for (const bool enabled : {false, true}) {
      const Dialog dialog = alert({QStringLiteral("A")}, hasCancel ? QStringLiteral("Cancel") : none);
      dialog->setCancelButtonEnabled(enabled);
      dialog->setDismissOnAction(false);
      int cancelled = 0;
      dialog->setCancelHandler([&](RQAlertView&) { ++cancelled; });
      dialog->show();
      press(Qt::Key_Escape);
      EXPECT_EQ(cancelled, hasCancel && enabled ? 1 : 0);
      dialog->dismiss();
      letGo();
    }
  }
  // From a list and from a field too.
  for (const Dialog& dialog : {sheet({QStringLiteral("A")}, QStringLiteral("Cancel")), withFields(1)}) {
    dialog->show();
    dialog->setShouldDismissAnimated(false);
    if (auto* list = listOf(dialog)) list->setFocus();
    press(Qt::Key_Escape);
    EXPECT_EQ(dialog->state(), RQAlertViewState::Dismissed);
    letGo();
  }
}

TEST_F(Keys, GoThroughTheFieldsWithReturnAndPressTheOnlyButton) {
  for (const QStringList& buttons :
       {QStringList{QStringLiteral("OK")}, QStringList{QStringLiteral("OK"), QStringLiteral("Other")}}) {
    const Dialog dialog = withFields(2, buttons);
    dialog->setDismissOnAction(false);
    int actions = 0;
    dialog->setActionHandler([&](RQAlertView&, std::size_t, const QString&) { ++actions; });
    dialog->show();
    press(Qt::Key_Return);
    EXPECT_EQ(focused(dialog), "field 1");
    EXPECT_EQ(actions, 0);
    press(Qt::Key_Return);
    EXPECT_EQ(actions, buttons.size() == 1 ? 1 : 0);
    dialog->setButtonEnabled(false, 0);
    press(Qt::Key_Return);
    EXPECT_EQ(actions, buttons.size() == 1 ? 1 : 0);
    dialog->dismiss();
    letGo();
  }
}

TEST_F(Keys, NeverReachWhatLiesBehind) {
  int typed = 0;
  QObject::connect(appField, &QLineEdit::textEdited, appWindow.get(), [&] { ++typed; });
  const Dialog dialog = RQAlertView::alertViewWithActivityIndicatorAndTitle(QStringLiteral("Wait"), none,
                                                                            alertStyle, none, {}, none, none);
  dialog->show();
  for (const Qt::Key key : {Qt::Key_A, Qt::Key_Tab, Qt::Key_B, Qt::Key_Return}) {
    QTest::keyClick(UIScreen::mainScreen()->windowHandle(), key);
  }
  EXPECT_EQ(typed, 0);
  EXPECT_FALSE(appField->isEnabled());
  dialog->dismiss();
  EXPECT_TRUE(appField->isEnabled());
  QTest::keyClick(UIScreen::mainScreen()->windowHandle(), Qt::Key_A);
  EXPECT_EQ(typed, 1);
}

TEST_F(Keys, OfAnOnScreenKeyboardMoveTheDialogUp) {
  UIKeyboard keyboard(nullptr);
  const Dialog dialog = withFields(1);
  dialog->show();
  const QRect before = frameOf(dialog)->geometry();
  const QRectF keys(0, 844 - 420, 390, 420);
  keyboard.setFrame(keys);
  EXPECT_LT(frameOf(dialog)->geometry().bottom(), keys.top());
  EXPECT_LT(frameOf(dialog)->y(), before.y());
  keyboard.setFrame({});
  EXPECT_EQ(frameOf(dialog)->geometry(), before);

  setMotionEnabled(true);
  keyboard.setFrame(keys);
  EXPECT_EQ(frameOf(dialog)->y(), before.y());
  EXPECT_TRUE(QTest::qWaitFor([&] { return frameOf(dialog)->geometry().bottom() < keys.top(); }));
  dialog->dismiss();
  keyboard.setFrame({});
}

}  // namespace
