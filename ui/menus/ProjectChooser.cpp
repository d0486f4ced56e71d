#include "ui/Localized.h"
#include "ui/dialogs/Dialogs.h"
#include "ui/menus/Menus.h"
#include "workspace/CurrentProject.h"
#include "workspace/ProjectFiles.h"
#include "workspace/Projects.h"

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
