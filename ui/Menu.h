// A sheet that lists titles and hands over the one that is tapped.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QStringList>

enum class MenuTexts {
  AsTheComponentHasThem,
  White,
};

struct Menu {
  QString title;
  QString message;  // null: none
  QStringList entries;
  MenuTexts texts = MenuTexts::AsTheComponentHasThem;
};

// Cancelling calls nothing.
void showMenu(const Menu& menu, std::function<void(const QString& title)> chosen);

// File names as the titles of a menu, each as it is.
QStringList titlesOf(const std::vector<std::string>& names);

// Calls `visit` for every name that reads like `title`: names that differ only in bytes that are no text look
// alike, and equal entries are visited one by one.
void forEachNamed(const std::vector<std::string>& names, const QString& title,
                  const std::function<void(const std::string&)>& visit);
