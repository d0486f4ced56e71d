#include "ui/OneLinePrompt.h"

#include <utility>

#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewTextField.h"
#include "ui/DialogLooks.h"
#include "ui/Localized.h"

void showOneLinePrompt(const QString& title, const QString& initialText,
                       std::function<void(const std::string&)> confirmed) {
  const auto prompt = RQAlertView::alertViewWithTextFieldsAndTitle(
      title, QStringLiteral("~ root$"), 1,
      [initialText](RQAlertViewTextField& field, std::size_t) {
        field.setKeyboardAppearance(UIKeyboardAppearance::Dark);
        field.setClearButtonMode(UITextFieldViewMode::WhileEditing);
        field.resignFirstResponder();
        if (!initialText.isNull()) field.setText(initialText);
      },
      QStringList{localized(text::confirm)}, localized(text::cancel), QString());
  dressAsPrompt(*prompt);
  prompt->setActionHandler([confirmed = std::move(confirmed)](RQAlertView& dialog, std::size_t, const QString&) {
    confirmed(dialog.textFieldsArray().front()->text().toStdString());
  });
  prompt->showAnimated();
}
