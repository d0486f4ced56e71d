#include "ui/menus/FlexPatchMenu.h"

#include "RQAlertView/RQAlertView.h"
#include "ui/Localized.h"
#include "ui/dialogs/DialogLooks.h"
#include "ui/dialogs/Menu.h"
#include "ui/screens/ViewController.h"
#include "workspace/FlexImport.h"

void showFlexMenu(ViewController& screen) {
  const std::vector<std::string> entries = harvestFlexMenu();
  // The cancel title is the same in both languages here.
  const auto sheet = RQAlertView::alertViewWithTitle(
      localized(text::addFlexPatch),
      QString::fromUtf8(flexBanner.data(), static_cast<qsizetype>(flexBanner.size())),
      RQAlertViewStyle::ActionSheet, titlesOf(entries), QStringLiteral("Cancel"), QString());
  dressAsMenu(*sheet);
  sheet->setActionHandler([entries, owner = Owner(&screen)](RQAlertView&, std::size_t index, const QString&) {
    forEachNamed(entries, index, [&owner](const std::string& entry) {
      convertFlexPatch(entry);
      refresh(owner);
      removeFlexMenu();
    });
  });
  sheet->showAnimated();
}
