#include "ui/Localized.h"
#include "ui/dialogs/Dialogs.h"
#include "ui/menus/Menus.h"
#include "workspace/CurrentProject.h"
#include "workspace/ProjectFiles.h"
#include "workspace/Projects.h"

namespace {

void confirmDeletingAll(const Owner& owner) {
  showConfirmation(localized(text::deleteAllProjects), localized(text::deleteAllProjectsQuestion),
                   localized(text::imSure), [owner] {
                     deleteAllProjects();
                     refresh(owner);
                   });
}

void showProjectsToDelete(const Owner& owner) {
  std::vector<std::string> entries = projectNames();
  // An action is an entry like the projects, so its title goes through the deletion as a project's name
  // first.
  entries.emplace_back(Languages(text::deleteAllProjects));
  showMenu({localized(text::deleteOptions), localized(text::whichOne), titlesOf(entries)},
           [entries, owner](std::size_t index, const QString& title) {
             forEachNamed(entries, index, [&owner](const std::string& name) {
               deleteProject(name);
               refresh(owner);
             });
             if (title == localized(text::deleteAllProjects)) confirmDeletingAll(owner);
           });
}

}  // namespace

void showDeleteMenu(ViewController& screen) {
  std::vector<std::string> entries = MUArray();
  entries.emplace_back(Languages(text::deleteCurrentProject));
  entries.emplace_back(Languages(text::deleteOptions));
  showMenu({localized(text::deleteFilesOrProjects), localized(text::whichOne), titlesOf(entries)},
           [entries, owner = Owner(&screen)](std::size_t index, const QString& title) {
             forEachNamed(entries, index, [&owner](const std::string& entry) {
               deleteProjectFile(entry);
               refresh(owner);
             });
             if (title == localized(text::deleteOptions)) showProjectsToDelete(owner);
             if (title == localized(text::deleteCurrentProject)) {
               deleteListedProject();
               refresh(owner);
             }
           });
}
