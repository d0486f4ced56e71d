#include "ui/dialogs/Menu.h"

#include "RQAlertView/RQAlertView.h"
#include "ui/Localized.h"
#include "ui/dialogs/DialogLooks.h"

#include <utility>

void showMenu(const Menu& menu, MenuChoice chosen) {
  const auto sheet = RQAlertView::alertViewWithTitle(menu.title, menu.message, RQAlertViewStyle::ActionSheet,
                                                     menu.entries, localized(text::cancel), QString());
  if (menu.texts == MenuTexts::White) {
    dressAsMessage(*sheet);
  } else {
    dressAsMenu(*sheet);
  }
  sheet->setActionHandler([chosen = std::move(chosen)](RQAlertView&, std::size_t index,
                                                       const QString& title) { chosen(index, title); });
  sheet->showAnimated();
}

QStringList titlesOf(const std::vector<std::string>& names) {
  QStringList titles;
  titles.reserve(static_cast<qsizetype>(names.size()));
  for (const std::string& name : names) titles.append(QString::fromStdString(name));
  return titles;
}

void forEachNamed(const std::vector<std::string>& names, std::size_t index,
                  const std::function<void(const std::string&)>& visit) {
  const std::string& chosen = names.at(index);
  for (const std::string& name : names) {
    if (name == chosen) visit(name);
  }
}
