#include "ui/ProjectChooser.h"

#include <QPointer>

#include "RQAlertView/RQAlertView.h"
#include "ui/DialogLooks.h"
#include "ui/Localized.h"
#include "ui/ViewController.h"
#include "workspace/Selection.h"

void showProjectChooser(ViewController& screen) {
  const std::vector<std::string> names = projectNames();
  QStringList titles;
  for (const std::string& name : names) titles.append(QString::fromStdString(name));
  const auto sheet = RQAlertView::alertViewWithTitle(localized(text::loadProject), QString(), RQAlertViewStyle::ActionSheet,
                                                     titles, localized(text::cancel), QString());
  dressAsMenu(*sheet);
  const QPointer<ViewController> owner(&screen);
  sheet->setActionHandler([names, owner](RQAlertView&, std::size_t, const QString& title) {
    for (const std::string& name : names) {
      if (QString::fromStdString(name) != title) continue;
      if (chooseProject(name) && owner) owner->viewDidLoadAfterDelay();
    }
  });
  sheet->showAnimated();
}
