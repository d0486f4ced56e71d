// The application's dialogs: menus, one-line prompts, messages and questions, and the colours of all of them.
#pragma once

#include "core/Languages.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QString>

class RQAlertView;

enum class MenuTexts {
  AsTheComponentHasThem,
  White,
};

struct Menu {
  QString title;
  QString message{};  // null: none
  MenuTexts texts = MenuTexts::AsTheComponentHasThem;
  QString cancelTitle{};  // null: "Cancel" in the language of the moment
};

struct MenuAction {
  TextPair title;
  std::function<void()> action;
};

// A sheet of names, each as it is, with actions below them. Cancelling calls nothing. A choice calls
// `chosen`, which may be null, with the name and once more for every other one of the same bytes; names that
// differ only in bytes that are not text have equal titles, but are not the same name. An action's title goes
// there like a name, before the action.
void showMenu(const Menu& menu, std::vector<std::string> names,
              std::function<void(const std::string&)> chosen, std::vector<MenuAction> actions = {});

struct OneLineQuestion {
  QString title;
  QString message;
  QString confirmTitle;
  QString initialText;  // null: the field starts empty
  bool animated = true;
};

// The question that the project menu asks: the prompt of a shell, and "Confirm".
OneLineQuestion shellQuestion(const QString& title, const QString& initialText = QString());

// Calls `confirmed` with the typed text, unchanged, when the user confirms; cancelling calls nothing.
void showOneLinePrompt(const OneLineQuestion& question, std::function<void(const std::string&)> confirmed);

// A message with one "OK" button. A null message is none.
void showNotice(const QString& title, const QString& message = QString());

// An address that no program of the host opens, as selected text with a button that copies it.
void showToCopy(const QString& title, const QString& address);

// A confirming button and "Cancel"; only the former calls `confirmed`.
void showConfirmation(const QString& title, const QString& message, const QString& confirmTitle,
                      std::function<void()> confirmed);

// "Save", "Discard" and "Cancel" for the file `name`, which has unsaved changes. `save` or `discard` is
// called once the question has gone; cancelling calls nothing.
std::shared_ptr<RQAlertView> showSaveQuestion(const QString& name, std::function<void()> save,
                                              std::function<void()> discard);

// The colours of a menu: dark ground, red cancel button.
void dressAsMenu(RQAlertView& dialog);
// Of a message or a question: a menu's with white texts.
void dressAsMessage(RQAlertView& dialog);
void dressAsPrompt(RQAlertView& dialog);
void dressAsProgress(RQAlertView& dialog);
