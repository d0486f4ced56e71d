// Alerts that only tell something, and questions that are confirmed or cancelled.
#pragma once

#include <functional>
#include <memory>

#include <QString>

class RQAlertView;

// One "OK" button. A null message is none.
void showNotice(const QString& title, const QString& message = QString());

// "Save", "Discard" and "Cancel" for the file `name`, whose changes are not saved. The answer is given once
// the question has gone; cancelling calls nothing.
std::shared_ptr<RQAlertView> showSaveQuestion(const QString& name, std::function<void()> save,
                                              std::function<void()> discard);

// A confirming button and "Cancel"; `confirmed` is called only for the former.
void showConfirmation(const QString& title, const QString& message, const QString& confirmTitle,
                      std::function<void()> confirmed);
