#include "ui/Localized.h"
#include "ui/dialogs/Dialogs.h"
#include "ui/menus/Menus.h"
#include "ui/screens/AppDelegate.h"
#include "workspace/CurrentProject.h"
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
  showMenu({.title = localized(text::whichOne), .texts = MenuTexts::White}, backupNames(),
           [owner](const std::string& name) {
             restoreBackup(name);
             showNotice(localized(text::done));
             chooseProject(name);
             refresh(owner);
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
  showMenu({localized(text::changeLanguage), QStringLiteral(""), MenuTexts::White}, {}, {},
           {{text::arabic, [] { endWith(Language::Arabic); }},
            {text::english, [] { endWith(Language::English); }},
            {{text::autoLanguage, text::autoLanguage}, [] { endWith(Language::Automatic); }}});
}

}  // namespace

void showOptionsMenu(ViewController& screen) {
  const Owner owner(&screen);
  showMenu({localized(text::extraOptions), localized(text::whichOne)}, {}, {},
           {{text::openInFilza, [] { openAddress(projectAddress()); }},
            {text::goToDebsFolder, [] { openAddress(packagesAddress()); }},
            {text::importFromPath, [owner] { askForImport(owner); }},
            {text::exportProjectToPath, askForExport},
            {text::backUp, backUpListedProject},
            {text::restore, [owner] { showBackups(owner); }},
            {text::deleteAllBackups, confirmDeletingBackups},
            {text::deleteDebsFolder, deletePackages},
            {text::changeProjectName, [owner] { askForChangedName(owner); }},
            {text::changeLanguage, showLanguages}});
}
