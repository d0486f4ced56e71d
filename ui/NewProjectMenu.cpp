#include "ui/NewProjectMenu.h"

#include <QPointer>

#include "RQAlertView/RQAlertView.h"

#include "core/FileManager.h"
#include "ui/DialogLooks.h"
#include "ui/Localized.h"
#include "ui/OneLinePrompt.h"
#include "ui/ViewController.h"
#include "workspace/CurrentProject.h"
#include "workspace/NewProject.h"
#include "workspace/Paths.h"

namespace {

using Owner = QPointer<ViewController>;

void askForProjectName(const Owner& owner) {
  showOneLinePrompt(localized(text::createNewProject), QString(), [owner](const std::string& typed) {
    createProject(typed);
    if (owner) owner->viewDidLoadAfterDelay();
  });
}

// A title of the sheet that is none of its actions is a project's name. The sheet has no such title; this is where one
// would be chosen.
void chooseListedProject(const QStringList& titles, const QStringList& actions, const QString& title, const Owner& owner) {
  for (const QString& entry : titles) {
    if (entry != title || actions.contains(title)) continue;
    const std::string name = entry.toStdString();
    setCurrentProject(withoutBlanks(name));
    if (fileExistsAtPath(fill(paths::project, {name})) && owner) owner->viewDidLoadAfterDelay();
  }
}

}  // namespace

void showNewProjectMenu(ViewController& screen) {
  const QStringList titles{localized(text::createNewProject), localized(text::createHeaderFile),
                           localized(text::changeFileName), localized(text::addFlexPatch)};
  const auto sheet = RQAlertView::alertViewWithTitle(localized(text::projectOptions), QString(),
                                                     RQAlertViewStyle::ActionSheet, titles, localized(text::cancel), QString());
  dressAsMenu(*sheet);
  sheet->setActionHandler([titles, owner = Owner(&screen)](RQAlertView&, std::size_t, const QString& title) {
    const QStringList actions{localized(text::createNewProject), localized(text::createHeaderFile),
                              localized(text::changeFileName), localized(text::addFlexPatch)};
    chooseListedProject(titles, actions, title, owner);
    if (title == localized(text::createNewProject)) askForProjectName(owner);
  });
  sheet->showAnimated();
}
