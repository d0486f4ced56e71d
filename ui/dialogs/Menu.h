// A sheet that lists titles and hands over the one that is tapped.
#pragma once

#include <cstddef>
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

// `index`: the tapped entry's.
using MenuChoice = std::function<void(std::size_t index, const QString& title)>;

// Cancelling calls nothing.
void showMenu(const Menu& menu, MenuChoice chosen);

// File names as the titles of a menu, each as it is.
QStringList titlesOf(const std::vector<std::string>& names);

// Calls `visit` for the name at `index` and for every other one of the same bytes, in their order. Names that
// differ only in bytes that are no text have equal titles; they are not taken for each other. Throws
// std::out_of_range.
void forEachNamed(const std::vector<std::string>& names, std::size_t index,
                  const std::function<void(const std::string&)>& visit);
