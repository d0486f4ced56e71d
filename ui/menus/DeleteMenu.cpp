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

// The title of the action goes through the deletion as a project's name first.
void showProjectsToDelete(const Owner& owner) {
  showMenu({localized(text::deleteOptions), localized(text::whichOne)}, projectNames(),
           [owner](const std::string& name) {
             deleteProject(name);
             refresh(owner);
           },
           {{text::deleteAllProjects, [owner] { confirmDeletingAll(owner); }}});
}

}  // namespace

void showDeleteMenu(ViewController& screen) {
  const Owner owner(&screen);
  showMenu({localized(text::deleteFilesOrProjects), localized(text::whichOne)}, MUArray(),
           [owner](const std::string& entry) {
             deleteProjectFile(entry);
             refresh(owner);
           },
           {{text::deleteCurrentProject,
             [owner] {
               deleteListedProject();
               refresh(owner);
             }},
            {text::deleteOptions, [owner] { showProjectsToDelete(owner); }}});
}
