// The dialogs that lead to a file of the current project or to a place in one. They come and go at once, so
// that what is typed next is not lost.
#pragma once

#include <functional>
#include <string>

#include <QString>

class UIButton;

// The line and the column are from 1, the column in bytes; 0 where no place in the file is meant.
using PlaceChosen = std::function<void(const std::string& path, long line, long column)>;

// Asks for a line, or a line and a column.
void showGoToLine(std::function<void(long line, long column)> chosen);

// Makes two buttons of a screen whose view is being made open two dialogs, by a click and by their keys.
// Go to File lists the files of all the project's folders, filters them while one types, and offers to make a
// file of a name that there is not. Search in Project lists the lines that hold what is typed, to begin with
// the word that `selected` returns, which may be null.
void wireProjectButtons(UIButton& goToFile, UIButton& search, const PlaceChosen& chosen,
                        std::function<QString()> selected = {});

// Posted without an object when a file has been made.
inline const QString ProjectFilesDidChangeNotification = QStringLiteral("ProjectFilesDidChangeNotification");
