#include "RQAlertView/RQAlertView.h"
#include "core/FileManager.h"
#include "ui/Localized.h"
#include "ui/dialogs/Dialogs.h"
#include "ui/menus/Menus.h"
#include "workspace/CurrentProject.h"
#include "workspace/FlexImport.h"
#include "workspace/Paths.h"
#include "workspace/ProjectFiles.h"
#include "workspace/Projects.h"

namespace {

// A title of the sheet that is none of its actions is a project's name. The sheet has no such title; this is
// where one would be chosen.
void chooseListedProject(const QStringList& titles, const QStringList& actions, const QString& title,
                         const Owner& owner) {
  for (const QString& entry : titles) {
    if (entry != title || actions.contains(title)) continue;
    const std::string name = entry.toStdString();
    setCurrentProject(withoutBlanks(name));
    if (fileExistsAtPath(fill(paths::project, {name}))) refresh(owner);
  }
}

void askForProjectName(const Owner& owner) {
  showOneLinePrompt(shellQuestion(localized(text::createNewProject)), [owner](const std::string& typed) {
    createProject(typed);
    refresh(owner);
  });
}

void askForHeaderName(const Owner& owner) {
  showOneLinePrompt(shellQuestion(localized(text::createHeaderFile)), [owner](const std::string& typed) {
    if (createHeader(typed)) refresh(owner);
  });
}

void askForFileName(const Owner& owner, const std::string& file) {
  const QString name = QString::fromStdString(file);
  showOneLinePrompt(shellQuestion(name, name), [owner, file](const std::string& typed) {
    renameFile(file, typed);
    refresh(owner);
  });
}

void showFilesToRename(const Owner& owner) {
  const std::vector<std::string> files = listedProjectFiles();
  showMenu({localized(text::whichOne), QString(), titlesOf(files)},
           [files, owner](std::size_t index, const QString&) {
             forEachNamed(files, index, [&owner](const std::string& file) { askForFileName(owner, file); });
           });
}

void showFlexPatches(const Owner& owner) {
  const std::vector<std::string> entries = harvestFlexMenu();
  // The cancel title is the same in both languages here.
  const auto sheet = RQAlertView::alertViewWithTitle(
      localized(text::addFlexPatch),
      QString::fromUtf8(flexBanner.data(), static_cast<qsizetype>(flexBanner.size())),
      RQAlertViewStyle::ActionSheet, titlesOf(entries), QStringLiteral("Cancel"), QString());
  dressAsMenu(*sheet);
  sheet->setActionHandler([entries, owner](RQAlertView&, std::size_t index, const QString&) {
    forEachNamed(entries, index, [&owner](const std::string& entry) {
      convertFlexPatch(entry);
      refresh(owner);
      removeFlexMenu();
    });
  });
  sheet->showAnimated();
}

QStringList actionTitles() {
  return {localized(text::createNewProject), localized(text::createHeaderFile),
          localized(text::changeFileName), localized(text::addFlexPatch)};
}

}  // namespace

void showNewProjectMenu(ViewController& screen) {
  const QStringList titles = actionTitles();
  showMenu({localized(text::projectOptions), QString(), titles},
           [titles, owner = Owner(&screen)](std::size_t, const QString& title) {
             chooseListedProject(titles, actionTitles(), title, owner);
             if (title == localized(text::addFlexPatch)) showFlexPatches(owner);
             if (title == localized(text::changeFileName)) showFilesToRename(owner);
             if (title == localized(text::createNewProject)) askForProjectName(owner);
             if (title == localized(text::createHeaderFile)) askForHeaderName(owner);
           });
}

void showProjectChooser(ViewController& screen) {
  const std::vector<std::string> names = projectNames();
  const Owner owner(&screen);
  showMenu({localized(text::loadProject), QString(), titlesOf(names)},
           [names, owner](std::size_t index, const QString&) {
             forEachNamed(names, index, [&owner](const std::string& name) {
               if (chooseProject(name)) refresh(owner);
             });
           });
}
