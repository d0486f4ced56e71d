#include "ui/dialogs/DialogLooks.h"

#include "RQAlertView/RQAlertView.h"
#include "platform/ApplicationStyle.h"

namespace {

const QColor& ground() {
  static const QColor colour = grey(40);
  return colour;
}

void dressWithRedCancel(RQAlertView& dialog, const QColor& separators) {
  dialog.setBackgroundColor(ground());
  dialog.setCancelButtonTitleColor(Qt::red);
  dialog.setCancelButtonBackgroundColorHighlighted(Qt::red);
  dialog.setSeparatorsColor(separators);
}

void whitenTexts(RQAlertView& dialog) {
  dialog.setTitleTextColor(Qt::white);
  dialog.setMessageTextColor(Qt::white);
}

}  // namespace

void dressAsMenu(RQAlertView& dialog) {
  dressWithRedCancel(dialog, grey(51));
}

void dressAsMessage(RQAlertView& dialog) {
  dressAsMenu(dialog);
  whitenTexts(dialog);
}

void dressAsPrompt(RQAlertView& dialog) {
  dressWithRedCancel(dialog, grey(48));
  whitenTexts(dialog);
  dialog.setButtonsTitleColor(Qt::white);
  dialog.setTextFieldsTextColor(Qt::white);
  dialog.setTextFieldsBackgroundColor(grey(69));
}

void dressAsProgress(RQAlertView& dialog) {
  dialog.setBackgroundColor(ground());
  dialog.setTitleTextColor(Qt::white);
  dialog.setActivityIndicatorViewColor(Qt::white);
  dialog.setProgressLabelTextColor(Qt::white);
}
