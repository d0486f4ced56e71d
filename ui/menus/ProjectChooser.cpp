#include "ui/menus/ProjectChooser.h"

#include "ui/Localized.h"
#include "ui/dialogs/Menu.h"
#include "ui/screens/ViewController.h"
#include "workspace/CurrentProject.h"

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
