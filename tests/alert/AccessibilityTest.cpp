// A dialog as a screen reader meets it.
#include "RQAlertView/RQAlertViewText.h"
#include "alert/Dialogs.h"

#include <QAccessible>

namespace {

using testing::ElementsAre;

class Accessibility : public Dialogs {
 protected:
  static QAccessibleInterface* interfaceOf(QObject* object) {
    return QAccessible::queryAccessibleInterface(object);
  }
  // The name of what is said to have the focus, row by row.
  static std::string focusName() {
    QAccessibleInterface* focused = interfaceOf(focus());
    if (focused && focused->focusChild()) focused = focused->focusChild();
    return focused && focused->state().focused ? focused->text(QAccessible::Name).toStdString() : "nothing";
  }
};

TEST_F(Accessibility, ExposesAnAlertAsAnAlertAndAQuestionAsADialog) {
  const Dialog untitled = RQAlertView::alertViewWithActivityIndicatorAndTitle(none, none, alertStyle,
                                                                              "Please wait", {}, none, none);
  for (const auto& [dialog, role, name] :
       std::initializer_list<std::tuple<Dialog, QAccessible::Role, const char*>>{
           {alert(), QAccessible::AlertMessage, "Title"},
           {sheet({"A"}), QAccessible::Dialog, "Title"},
           {withFields(1), QAccessible::Dialog, "Title"},
           {untitled, QAccessible::AlertMessage, "Please wait"}}) {
    dialog->show();
    QAccessibleInterface* box = interfaceOf(frameOf(dialog));
    EXPECT_EQ(box->role(), role);
    EXPECT_EQ(box->text(QAccessible::Name), name);
    EXPECT_EQ(box->text(QAccessible::Description), dialog->message());
    EXPECT_TRUE(box->state().modal);
    EXPECT_TRUE(box->state().active);
    close(dialog);
  }
}

TEST_F(Accessibility, MovesTheFocusInAndBackOut) {
  const Dialog dialog = showing(alert({"A && B"}, "Cancel"));
  EXPECT_EQ(focusName(), "Cancel");
  QTest::keyClick(focus(), Qt::Key_Tab);
  EXPECT_EQ(focusName(), "A && B");
  appField->setAccessibleName("Behind");
  EXPECT_TRUE(interfaceOf(appField)->state().disabled);
  close(dialog);
  EXPECT_EQ(focusName(), "Behind");
  EXPECT_FALSE(interfaceOf(appField)->state().disabled);
}

TEST_F(Accessibility, ExposesButtonsByTheirTitlesWithAPress) {
  const Dialog dialog = listeningTo(alert({"Save & quit"}, "Cancel"));
  QAccessibleInterface* button = interfaceOf(buttonOf(dialog, "Save & quit"));
  EXPECT_EQ(button->role(), QAccessible::Button);
  EXPECT_EQ(button->text(QAccessible::Name), "Save & quit");
  button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  // The button is seen to go down and up again.
  EXPECT_TRUE(QTest::qWaitFor([&] { return heard == std::vector<std::string>{"Save & quit"}; }));
}

TEST_F(Accessibility, ExposesRowsAsItemsThatCanBePressed) {
  const Dialog dialog = sheet({"A", "B"}, none, "Delete");
  dialog->setButtonEnabled(false, 0);
  listeningTo(dialog);
  QAccessibleInterface* list = interfaceOf(listOf(dialog));
  ASSERT_EQ(list->role(), QAccessible::List);
  ASSERT_EQ(list->childCount(), 3);
  std::vector<std::string> names;
  for (int row = 0; row < 3; ++row) {
    QAccessibleInterface* item = list->child(row);
    EXPECT_EQ(item->role(), QAccessible::ListItem);
    EXPECT_EQ(item->parent(), list);
    EXPECT_EQ(list->indexOfChild(item), row);
    names.push_back(item->text(QAccessible::Name).toStdString());
    const QPoint middle = item->rect().center();
    EXPECT_EQ(list->childAt(middle.x(), middle.y()), item);
    item->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  }
  EXPECT_THAT(names, ElementsAre("Delete", "A", "B"));
  EXPECT_THAT(answered(), ElementsAre("destroyed", "B"));
  EXPECT_TRUE(list->child(1)->state().disabled);

  // Moving among the rows is told row by row.
  QTest::keyClick(focus(), Qt::Key_Home);
  EXPECT_EQ(focusName(), "Delete");
  QTest::keyClick(focus(), Qt::Key_End);
  EXPECT_EQ(focusName(), "B");
  EXPECT_TRUE(list->child(2)->state().focused);
  EXPECT_EQ(list->focusChild(), list->child(2));
}

TEST_F(Accessibility, LabelsFieldsAndReadsTexts) {
  const Dialog dialog = RQAlertView::alertViewWithTextFieldsAndTitle(
      "Name of the <b>file</b>", "~ root$", 3,
      [](RQAlertViewTextField& field, std::size_t index) {
        if (index == 1) field.setAccessibleName("Second");
        if (index > 0) field.setPlaceholder("Here");
      },
      {"OK"}, none, none);
  dialog->show();
  const auto fields = dialog->textFieldsArray();
  EXPECT_EQ(interfaceOf(fields[0])->role(), QAccessible::EditableText);
  EXPECT_EQ(interfaceOf(fields[0])->text(QAccessible::Name), "Name of the <b>file</b>");
  EXPECT_EQ(interfaceOf(fields[1])->text(QAccessible::Name), "Second");
  EXPECT_EQ(interfaceOf(fields[2])->text(QAccessible::Name), "Here");
  fields[2]->setPlaceholderText(none);
  EXPECT_EQ(interfaceOf(fields[2])->text(QAccessible::Name), "Name of the <b>file</b>");
  std::vector<std::string> texts;
  for (auto* label : dialog->view()->findChildren<RQAlertViewLabel*>()) {
    EXPECT_EQ(interfaceOf(label)->role(), QAccessible::StaticText);
    texts.push_back(interfaceOf(label)->text(QAccessible::Name).toStdString());
  }
  EXPECT_THAT(texts, ElementsAre("Name of the <b>file</b>", "~ root$"));
}

}  // namespace
