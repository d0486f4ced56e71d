#include "ui/menus/OptionsMenu.h"

#include "core/Languages.h"
#include "ui/Localized.h"
#include "ui/OpenAddress.h"
#include "ui/dialogs/Menu.h"
#include "ui/dialogs/Notice.h"
#include "ui/dialogs/OneLinePrompt.h"
#include "ui/menus/BackupMenu.h"
#include "ui/screens/ViewController.h"
#include "workspace/Projects.h"

#include <cstdio>
#include <cstdlib>

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

void askForProjectName(const Owner& owner) {
  showOneLinePrompt(
      {localized(text::changeProjectName), QStringLiteral(""), QStringLiteral("Change"), QString()},
      [owner](const std::string& typed) {
        renameProject(typed);
        refresh(owner);
      });
}

// The next start speaks the new language. Nothing is to be saved, and the objects on screen are not to be
// taken apart from within one of their own handlers, so the process ends where it is.
[[noreturn]] void endWith(Language language) {
  setLanguage(language);
  std::fflush(nullptr);
  std::_Exit(EXIT_SUCCESS);
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
             if (title == localized(text::changeProjectName)) askForProjectName(owner);
             if (title == localized(text::backUp)) backUpListedProject();
             if (title == localized(text::restore) && owner) showBackups(*owner);
             if (title == localized(text::deleteAllBackups)) confirmDeletingBackups();
           });
}
