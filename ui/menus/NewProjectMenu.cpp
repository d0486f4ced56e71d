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

constexpr TextPair actionTitles[] = {text::createNewProject, text::createHeaderFile, text::changeFileName,
                                     text::addFlexPatch};

// A title of the sheet that is none of its actions is a project's name. The sheet has no such title; this is
// where one would be chosen.
void chooseListedProject(const std::string& title, const Owner& owner) {
  for (const TextPair& action : actionTitles) {
    if (title == Languages(action)) return;
  }
  setCurrentProject(withoutBlanks(title));
  if (fileExistsAtPath(fill(paths::project, {title}))) refresh(owner);
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
  showMenu({localized(text::whichOne)}, listedProjectFiles(),
           [owner](const std::string& file) { askForFileName(owner, file); });
}

void showFlexPatches(const Owner& owner) {
  // The cancel title is the same in both languages here.
  showMenu({.title = localized(text::addFlexPatch),
            .message = QString::fromUtf8(flexBanner.data(), static_cast<qsizetype>(flexBanner.size())),
            .cancelTitle = QStringLiteral("Cancel")},
           harvestFlexMenu(), [owner](const std::string& entry) {
             convertFlexPatch(entry);
             refresh(owner);
             removeFlexMenu();
           });
}

}  // namespace

void showNewProjectMenu(ViewController& screen) {
  const Owner owner(&screen);
  showMenu({localized(text::projectOptions)}, {},
           [owner](const std::string& title) { chooseListedProject(title, owner); },
           {{actionTitles[0], [owner] { askForProjectName(owner); }},
            {actionTitles[1], [owner] { askForHeaderName(owner); }},
            {actionTitles[2], [owner] { showFilesToRename(owner); }},
            {actionTitles[3], [owner] { showFlexPatches(owner); }}});
}

void showProjectChooser(ViewController& screen) {
  showMenu({localized(text::loadProject)}, projectNames(), [owner = Owner(&screen)](const std::string& name) {
    if (chooseProject(name)) refresh(owner);
  });
}
