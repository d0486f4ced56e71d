// The text fields of a dialog.
#include "alert/Dialogs.h"
#include "platform/ApplicationStyle.h"

#include <functional>

namespace {

using testing::ElementsAre;

class Fields : public Dialogs {};

Dialog withFields(std::size_t number, const RQAlertViewTextFieldsSetupHandler& setUp,
                  const Dialog& dialog = RQAlertView::alloc()) {
  return dialog->initWithTextFieldsAndTitle("Title", {}, number, setUp, {"OK"}, "Cancel", {});
}

TEST_F(Fields, SetsUpEachFieldOnceAndKeepsWhatWasSet) {
  std::vector<std::size_t> indices;
  const Dialog dialog = withFields(3, [&](RQAlertViewTextField& field, std::size_t index) {
    indices.push_back(index);
    EXPECT_EQ(field.clearButtonMode(), UITextFieldViewMode::Always);
    field.setClearButtonMode(UITextFieldViewMode::WhileEditing);
    field.setText(QString::number(index));
    field.setEnabled(index > 0);
    field.resignFirstResponder();
    if (index == 1) field.setAccessibleName("Second");
    if (index > 0) field.setPlaceholder("Here");
  });
  EXPECT_THAT(indices, ElementsAre(0U, 1U, 2U));
  change(*dialog, "textFieldsTextColor=yellow textFieldsBackgroundColor=black");
  dialog->show();
  const auto fields = dialog->textFieldsArray();
  ASSERT_EQ(fields.size(), 3U);
  EXPECT_TRUE(fields[1]->isFirstResponder()) << "the first that takes the focus";
  EXPECT_EQ(fields[2]->text(), "2");
  EXPECT_EQ(fields[1]->clearButtonMode(), UITextFieldViewMode::WhileEditing);
  EXPECT_EQ(fields[1]->palette().color(QPalette::Text), QColor(Qt::yellow));
  fields[2]->setColors(Qt::black, Qt::green);
  change(*dialog, "tintColor=magenta");
  EXPECT_EQ(fields[2]->palette().color(QPalette::Text), QColor(Qt::green));
  EXPECT_EQ(fields[2]->palette().color(QPalette::Highlight), QColor(Qt::magenta));
  EXPECT_EQ(fields[1]->grab().toImage().pixelColor(fields[1]->width() / 2, 0).red(), 255)
      << "a ring in the tint";

  EXPECT_EQ(fields[0]->accessibleName(), "Title");
  EXPECT_EQ(fields[1]->accessibleName(), "Second");
  EXPECT_EQ(fields[2]->accessibleName(), "Here");
  fields[2]->setPlaceholderText({});
  EXPECT_EQ(fields[2]->accessibleName(), "Title");
  fields[2]->actions().front()->trigger();
  EXPECT_TRUE(fields[2]->text().isEmpty()) << "the button that clears it";
}

TEST_F(Fields, HandsAWholeDialogToASetUpHandler) {
  const Dialog changed = RQAlertView::alloc();
  withFields(
      2,
      [&](RQAlertViewTextField&, std::size_t) {
        change(*changed, "button0.enabled=0 textFieldsTextColor=yellow");
        EXPECT_EQ(changed->textFieldsArray().size(), 2U);
      },
      changed);
  changed->show();
  EXPECT_FALSE(buttonOf(changed, "OK")->isEnabled());
  EXPECT_EQ(changed->textFieldsArray()[0]->palette().color(QPalette::Text), QColor(Qt::yellow));
  changed->dismiss();

  Dialog only = RQAlertView::alloc();
  const Dialog returned = withFields(
      2, [&](RQAlertViewTextField&, std::size_t) { only.reset(); }, Dialog(only));
  EXPECT_EQ(returned->state(), RQAlertViewState::Made);

  const Dialog destroyed = RQAlertView::alloc();
  withFields(
      2, [&](RQAlertViewTextField&, std::size_t) { delete destroyed->window().get(); }, destroyed);
  EXPECT_EQ(destroyed->state(), RQAlertViewState::Dismissed);
}

}  // namespace
