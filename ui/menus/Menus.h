// The menus of the main screen.
#pragma once

#include "ui/screens/ViewController.h"

#include <QPointer>

// The sheet in which the current project is chosen.
void showProjectChooser(ViewController& screen);

// Making a project, adding a header, renaming a file, importing a Flex patch.
void showNewProjectMenu(ViewController& screen);

// Deleting one file, the whole project, any project, every project.
void showDeleteMenu(ViewController& screen);

// Opening folders, import and export, backups, the project's name, the language.
void showOptionsMenu(ViewController& screen);

// How a menu holds the screen that it belongs to, which may be gone when the user answers.
using Owner = QPointer<ViewController>;

// Brings the screen up to date a moment later, if it is still there.
inline void refresh(const Owner& owner) {
  if (owner) owner->viewDidLoadAfterDelay();
}
