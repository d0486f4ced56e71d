#include "ui/dialogs/Dialogs.h"

#include "RQAlertView/RQAlertView.h"
#include "RQAlertView/RQAlertViewTextField.h"
#include "ui/Localized.h"
#include "ui/controls/Looks.h"

#include <utility>

#include <QClipboard>
#include <QGuiApplication>
#include <QPlainTextEdit>

namespace {

QWidget* makeAddressText(const QString& address) {
  auto* const text = new QPlainTextEdit(address);
  text->setReadOnly(true);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  // An address has no blanks to break at, and reads from the left in every language.
  text->setWordWrapMode(QTextOption::WrapAnywhere);
  text->setLayoutDirection(Qt::LeftToRight);
  text->setTabChangesFocus(true);
  text->setFrameShape(QFrame::NoFrame);
  text->setAccessibleName(QPlainTextEdit::tr("Address"));
  text->setFixedHeight(metrics::addressLines * text->fontMetrics().lineSpacing() +
                       2 * qRound(text->document()->documentMargin()));
  text->selectAll();
  return text;
}

std::shared_ptr<RQAlertView> makeMessage(const QString& title, const QString& message,
                                         const QStringList& buttons, const QString& cancel = {},
                                         const QString& destructive = {}) {
  auto dialog =
      RQAlertView::alertViewWithTitle(title, message, RQAlertViewStyle::Alert, buttons, cancel, destructive);
  dressAsMessage(*dialog);
  return dialog;
}

}  // namespace

void showMenu(const Menu& menu, std::vector<std::string> names,
              std::function<void(const std::string&)> chosen, std::vector<MenuAction> actions) {
  for (const MenuAction& each : actions) names.emplace_back(Languages(each.title));
  QStringList titles;
  for (const std::string& name : names) titles.append(QString::fromStdString(name));
  const auto sheet = RQAlertView::alertViewWithTitle(
      menu.title, menu.message, RQAlertViewStyle::ActionSheet, titles,
      menu.cancelTitle.isNull() ? localized(text::cancel) : menu.cancelTitle, QString());
  menu.texts == MenuTexts::White ? dressAsMessage(*sheet) : dressAsMenu(*sheet);
  sheet->setActionHandler(
      [names = std::move(names), chosen = std::move(chosen), actions = std::move(actions)](
          RQAlertView&, std::size_t index, const QString& title) {
        for (const std::string& name : names) {
          if (chosen && name == names[index]) chosen(name);
        }
        for (const MenuAction& each : actions) {
          if (title == localized(each.title)) each.action();
        }
      });
  sheet->showAnimated();
}

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
  prompt->setShouldDismissAnimated(question.animated);
  prompt->showAnimated(question.animated);
}

void showNotice(const QString& title, const QString& message) {
  makeMessage(title, message, {localized(text::ok)})->showAnimated();
}

void showToCopy(const QString& title, const QString& address) {
  const auto notice = RQAlertView::alertViewWithViewAndTitle(
      title, localized(text::noProgramOpensIt), RQAlertViewStyle::Alert, makeAddressText(address),
      QStringList{localized(text::copy), localized(text::ok)}, QString(), QString());
  dressAsMessage(*notice);
  notice->setActionHandler([address](RQAlertView&, std::size_t, const QString& pressed) {
    if (pressed == localized(text::copy)) QGuiApplication::clipboard()->setText(address);
  });
  notice->showAnimated();
}

void showConfirmation(const QString& title, const QString& message, const QString& confirmTitle,
                      std::function<void()> confirmed) {
  const auto question = makeMessage(title, message, {confirmTitle}, localized(text::cancel));
  question->setActionHandler(
      [confirmTitle, confirmed = std::move(confirmed)](RQAlertView&, std::size_t, const QString& pressed) {
        if (pressed == confirmTitle) confirmed();
      });
  question->showAnimated();
}

std::shared_ptr<RQAlertView> showSaveQuestion(const QString& name, std::function<void()> save,
                                              std::function<void()> discard) {
  auto question =
      makeMessage(localized(text::saveChanges), localized(text::changesWouldBeLost, {name.toStdString()}),
                  {localized(text::save)}, localized(text::cancel), localized(text::discard));
  question->setDidDismissAfterActionHandler(
      [save = std::move(save)](RQAlertView&, std::size_t, const QString&) { save(); });
  question->setDidDismissAfterDestructiveHandler([discard = std::move(discard)](RQAlertView&) { discard(); });
  question->showAnimated();
  return question;
}

void dressAsMenu(RQAlertView& dialog) {
  dialog.setBackgroundColor(grey(40));
  dialog.setCancelButtonTitleColor(Qt::red);
  dialog.setCancelButtonBackgroundColorHighlighted(Qt::red);
  dialog.setSeparatorsColor(grey(51));
}

void dressAsMessage(RQAlertView& dialog) {
  dressAsMenu(dialog);
  dialog.setTitleTextColor(Qt::white);
  dialog.setMessageTextColor(Qt::white);
}

void dressAsPrompt(RQAlertView& dialog) {
  dressAsMessage(dialog);
  dialog.setSeparatorsColor(grey(48));
  dialog.setButtonsTitleColor(Qt::white);
  dialog.setTextFieldsTextColor(Qt::white);
  dialog.setTextFieldsBackgroundColor(grey(69));
}

void dressAsProgress(RQAlertView& dialog) {
  dialog.setBackgroundColor(grey(40));
  dialog.setTitleTextColor(Qt::white);
  dialog.setActivityIndicatorViewColor(Qt::white);
  dialog.setProgressLabelTextColor(Qt::white);
}
