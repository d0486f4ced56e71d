// The text fields of a dialog.
#include "alert/Pictures.h"
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
  EXPECT_EQ(fields[2]->palette().color(QPalette::Highlight), telling);
  EXPECT_EQ(fields[1]->grab().toImage().pixelColor(fields[1]->width() / 2, 0).red(), 255)
      << "a ring in the tint";

  EXPECT_EQ(fields[0]->accessibleName(), "Title");
  EXPECT_EQ(fields[1]->accessibleName(), "Second");
  EXPECT_EQ(fields[2]->accessibleName(), "Here");
  fields[2]->setPlaceholderText({});
  EXPECT_EQ(fields[2]->accessibleName(), "Title");
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

TEST_F(Fields, FitsATextIntoItsFieldAndGoesBackToTheFontItWasGiven) {
  const Dialog dialog = showing("alert fields=1 textFieldsAdjustsFontSizeToFitWidth=1");
  RQAlertViewTextField* field = dialog->textFieldsArray()[0];
  const QFont full = field->font();
  EXPECT_EQ(full, dialog->textFieldsFont());
  field->setText(QString(60, u'm'));
  EXPECT_EQ(field->font().pointSizeF(), systemFontOfSize(12).pointSizeF());
  // The font in between is not taken for the one that was given.
  change(*dialog, "textFieldsMinimumFontSize=1");
  EXPECT_LT(field->font().pointSizeF(), systemFontOfSize(12).pointSizeF());
  EXPECT_GT(field->font().pointSizeF(), systemFontOfSize(1).pointSizeF());
  field->clear();
  EXPECT_EQ(field->font(), full);
  field->setText(QString(60, u'm'));
  change(*dialog, "textFieldsAdjustsFontSizeToFitWidth=0");
  EXPECT_EQ(field->font(), full);
  // Nor does the least size make a small font larger.
  change(*dialog, "textFieldsMinimumFontSize=40 textFieldsAdjustsFontSizeToFitWidth=1");
  EXPECT_EQ(field->font(), full);
}

TEST_F(Fields, PutsPlaceholderAndCaretOnTheSameSide) {
  const Dialog dialog = showing("alert fields=2 textFieldsBackgroundColor=white textFieldsTextColor=magenta");
  RQAlertViewTextField* field = dialog->textFieldsArray()[1];
  // Without the corners.
  const QRect inner = field->rect().adjusted(8, 8, -8, -8);
  for (const char* placeholder : {"Name", "\u0627\u0644\u0627\u0633\u0645"}) {
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
      UIApplication::setLayoutDirection(direction);
      field->setPlaceholder(QString::fromUtf8(placeholder));
      for (const auto side : {NSTextAlignment::Left, NSTextAlignment::Right}) {
        SCOPED_TRACE(std::string(placeholder) + std::to_string(direction) + std::to_string(int(side)));
        dialog->setTextFieldsTextAlignment(side);
        const bool left = side == NSTextAlignment::Left;
        // Painting places the text, and the caret with it. The placeholder's colour is half the text's.
        const QRect letters = extentOf(field->grab(inner).toImage(), QColor(255, 100, 255));
        EXPECT_FALSE(letters.isNull());
        EXPECT_EQ(letters.right() < inner.width() / 2, left);
        EXPECT_EQ(letters.left() < inner.width() / 2, left);
        EXPECT_EQ(field->inputMethodQuery(Qt::ImCursorRectangle).toRect().center().x() < inner.center().x(),
                  left);
      }
    }
  }
}

TEST_F(Fields, ShowsTheClearButtonWhenItsModeSaysAndThereIsSomethingToClear) {
  using Mode = UITextFieldViewMode;
  const Dialog dialog = showing("alert fields=2");
  RQAlertViewTextField* field = dialog->textFieldsArray()[0];
  RQAlertViewTextField* other = dialog->textFieldsArray()[1];
  const auto shown = [&] { return field->actions().front()->isVisible(); };
  for (const auto& [mode, editing, resting] :
       std::initializer_list<std::tuple<Mode, bool, bool>>{{Mode::Never, false, false},
                                                           {Mode::WhileEditing, true, false},
                                                           {Mode::UnlessEditing, false, true},
                                                           {Mode::Always, true, true}}) {
    field->setClearButtonMode(mode);
    field->setText("text");
    field->setFocus();
    EXPECT_EQ(shown(), editing) << static_cast<int>(mode);
    other->setFocus();
    EXPECT_EQ(shown(), resting) << static_cast<int>(mode);
    field->clear();
    EXPECT_FALSE(shown());
  }
  field->setText("text");
  field->actions().front()->trigger();
  EXPECT_TRUE(field->text().isEmpty());
}

}  // namespace
