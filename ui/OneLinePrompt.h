// A question that is answered by one line of text.
#pragma once

#include <functional>
#include <string>

#include <QString>

// Shows a dialog with one text field that holds `initialText` (null for none) and calls `confirmed` with what is typed,
// as it is, when the user confirms. The keyboard does not open by itself.
void showOneLinePrompt(const QString& title, const QString& initialText,
                       std::function<void(const std::string&)> confirmed);
