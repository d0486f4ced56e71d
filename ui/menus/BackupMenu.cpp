#include "ui/menus/BackupMenu.h"

#include "ui/Localized.h"
#include "ui/dialogs/Menu.h"
#include "ui/dialogs/Notice.h"
#include "ui/screens/ViewController.h"
#include "workspace/Projects.h"

void backUpListedProject() {
  if (const MaybeText backup = backUpProject()) {
    showNotice(localized(text::done), QString::fromStdString(*backup));
  } else {
    showNotice(localized(text::error), localized(text::noData));
  }
}

void showBackups(ViewController& screen) {
  const std::vector<std::string> names = backupNames();
  const Owner owner(&screen);
  showMenu({localized(text::whichOne), QString(), titlesOf(names), MenuTexts::White},
           [names, owner](std::size_t index, const QString&) {
             forEachNamed(names, index, [&owner](const std::string& name) {
               restoreBackup(name);
               showNotice(localized(text::done));
               chooseRestoredProject(name);
               refresh(owner);
             });
           });
  // The screen is brought up to date whether or not a backup is chosen.
  screen.viewDidLoadAfterDelay();
}

void confirmDeletingBackups() {
  showConfirmation(localized(text::deleteAllBackupsQuestion), QString(), localized(text::confirm), [] {
    deleteAllBackups();
    showNotice(localized(text::done));
  });
}
