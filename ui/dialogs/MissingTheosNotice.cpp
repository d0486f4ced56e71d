#include "ui/dialogs/MissingTheosNotice.h"

#include "ui/Localized.h"
#include "ui/dialogs/Notice.h"

void showMissingTheos() {
  showNotice(localized(text::couldNotFindTheos), localized(text::mustInstallTheos));
}
