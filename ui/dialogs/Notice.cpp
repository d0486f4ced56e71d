#include "ui/dialogs/Notice.h"

#include "RQAlertView/RQAlertView.h"
#include "ui/Localized.h"
#include "ui/dialogs/DialogLooks.h"

#include <utility>

void showNotice(const QString& title, const QString& message) {
  const auto notice = RQAlertView::alertViewWithTitle(title, message, RQAlertViewStyle::Alert,
                                                      QStringList{localized(text::ok)}, QString(), QString());
  dressAsMessage(*notice);
  notice->showAnimated();
}

void showConfirmation(const QString& title, const QString& message, const QString& confirmTitle,
                      std::function<void()> confirmed) {
  const auto question = RQAlertView::alertViewWithTitle(
      title, message, RQAlertViewStyle::Alert, QStringList{confirmTitle}, localized(text::cancel), QString());
  dressAsMessage(*question);
  question->setActionHandler(
      [confirmTitle, confirmed = std::move(confirmed)](RQAlertView&, std::size_t, const QString& pressed) {
        if (pressed == confirmTitle) confirmed();
      });
  question->showAnimated();
}

std::shared_ptr<RQAlertView> showSaveQuestion(const QString& name, std::function<void()> save,
                                              std::function<void()> discard) {
  auto question = RQAlertView::alertViewWithTitle(localized(text::saveChanges),
                                                  localized(text::changesWouldBeLost, {name.toStdString()}),
                                                  RQAlertViewStyle::Alert, QStringList{localized(text::save)},
                                                  localized(text::cancel), localized(text::discard));
  dressAsMessage(*question);
  question->setDidDismissAfterActionHandler(
      [save = std::move(save)](RQAlertView&, std::size_t, const QString&) { save(); });
  question->setDidDismissAfterDestructiveHandler([discard = std::move(discard)](RQAlertView&) { discard(); });
  question->showAnimated();
  return question;
}
