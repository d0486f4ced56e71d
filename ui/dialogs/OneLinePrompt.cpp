#include "ui/dialogs/OneLinePrompt.h"

#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewTextField.h"
#include "ui/Localized.h"
#include "ui/dialogs/DialogLooks.h"

#include <utility>

OneLineQuestion shellQuestion(const QString& title, const QString& initialText) {
  return {title, QStringLiteral("~ root$"), localized(text::confirm), initialText};
}

void showOneLinePrompt(const OneLineQuestion& question, std::function<void(const std::string&)> confirmed) {
  const auto prompt = RQAlertView::alertViewWithTextFieldsAndTitle(
      question.title, question.message, 1,
      [initialText = question.initialText](RQAlertViewTextField& field, std::size_t) {
        field.setKeyboardAppearance(UIKeyboardAppearance::Dark);
        field.setClearButtonMode(UITextFieldViewMode::WhileEditing);
        field.resignFirstResponder();
        if (!initialText.isNull()) field.setText(initialText);
      },
      QStringList{question.confirmTitle}, localized(text::cancel), QString());
  dressAsPrompt(*prompt);
  prompt->setActionHandler([confirmTitle = question.confirmTitle, confirmed = std::move(confirmed)](
                               RQAlertView& dialog, std::size_t, const QString& title) {
    if (title == confirmTitle) confirmed(dialog.textFieldsArray().front()->text().toStdString());
  });
  prompt->showAnimated();
}
