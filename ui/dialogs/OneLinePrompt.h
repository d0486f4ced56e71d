// A question that is answered by one line of text.
#pragma once

#include <functional>
#include <string>

#include <QString>

struct OneLineQuestion {
  QString title;
  QString message;
  QString confirmTitle;
  QString initialText;  // null: the field starts empty
};

// The question that the project menu asks: the prompt of a shell, and "Confirm".
OneLineQuestion shellQuestion(const QString& title, const QString& initialText = QString());

// Calls `confirmed` with what is typed, as it is, when the user confirms; cancelling calls nothing.
void showOneLinePrompt(const OneLineQuestion& question, std::function<void(const std::string&)> confirmed);
