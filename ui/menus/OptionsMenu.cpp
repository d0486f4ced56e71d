#include "ui/Localized.h"
#include "ui/dialogs/Dialogs.h"
#include "ui/menus/Menus.h"
#include "ui/screens/AppDelegate.h"
#include "workspace/Projects.h"

namespace {

void askForImport(const Owner& owner) {
  showOneLinePrompt(
      {localized(text::importFromPath), localized(text::pathExample), localized(text::import_), QString()},
      [owner](const std::string& typed) {
        if (importProject(typed)) {
          refresh(owner);
        } else {
          showNotice(localized(text::noData));
        }
      });
}

void askForExport() {
  showOneLinePrompt({localized(text::exportProjectToPath), localized(text::pathExample),
                     localized(text::export_), QString()},
                    [](const std::string& typed) { exportProject(typed); });
}

void askForChangedName(const Owner& owner) {
  showOneLinePrompt(
      {localized(text::changeProjectName), QStringLiteral(""), QStringLiteral("Change"), QString()},
      [owner](const std::string& typed) {
        renameProject(typed);
        refresh(owner);
      });
}

void backUpListedProject() {
  if (const MaybeText backup = backUpProject()) {
    showNotice(localized(text::done), QString::fromStdString(*backup));
  } else {
    showNotice(localized(text::error), localized(text::noData));
  }
}

void showBackups(const Owner& owner) {
  const std::vector<std::string> names = backupNames();
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
  refresh(owner);
}

void confirmDeletingBackups() {
  showConfirmation(localized(text::deleteAllBackupsQuestion), QString(), localized(text::confirm), [] {
    deleteAllBackups();
    showNotice(localized(text::done));
  });
}

// The next start speaks the new language.
[[noreturn]] void endWith(Language language) {
  setLanguage(language);
  startAgain();
}

void showLanguages() {
  const QString automatic = QString::fromUtf8(text::autoLanguage);
  showMenu({localized(text::changeLanguage),
            QStringLiteral(""),
            {localized(text::arabic), localized(text::english), automatic},
            MenuTexts::White},
           [automatic](std::size_t, const QString& title) {
             if (title == localized(text::arabic)) endWith(Language::Arabic);
             if (title == localized(text::english)) endWith(Language::English);
             if (title == automatic) endWith(Language::Automatic);
           });
}

}  // namespace

void showOptionsMenu(ViewController& screen) {
  const QStringList entries{localized(text::openInFilza),
                            localized(text::goToDebsFolder),
                            localized(text::importFromPath),
                            localized(text::exportProjectToPath),
                            localized(text::backUp),
                            localized(text::restore),
                            localized(text::deleteAllBackups),
                            localized(text::deleteDebsFolder),
                            localized(text::changeProjectName),
                            localized(text::changeLanguage)};
  showMenu({localized(text::extraOptions), localized(text::whichOne), entries},
           [owner = Owner(&screen)](std::size_t, const QString& title) {
             if (title == localized(text::importFromPath)) askForImport(owner);
             if (title == localized(text::goToDebsFolder)) openAddress(packagesAddress());
             if (title == localized(text::deleteDebsFolder)) deletePackages();
             if (title == localized(text::openInFilza)) openAddress(projectAddress());
             if (title == localized(text::exportProjectToPath)) askForExport();
             if (title == localized(text::changeLanguage)) showLanguages();
             if (title == localized(text::changeProjectName)) askForChangedName(owner);
             if (title == localized(text::backUp)) backUpListedProject();
             if (title == localized(text::restore)) showBackups(owner);
             if (title == localized(text::deleteAllBackups)) confirmDeletingBackups();
           });
}
