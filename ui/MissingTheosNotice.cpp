#include "ui/MissingTheosNotice.h"

#include "ui/Localized.h"
#include "ui/Notice.h"

void showMissingTheos() {
  showNotice(localized(text::couldNotFindTheos), localized(text::mustInstallTheos));
}
