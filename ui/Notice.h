// Alerts that only tell something, and questions that are confirmed or cancelled.
#pragma once

#include <functional>

#include <QString>

// One "OK" button. A null message is none.
void showNotice(const QString& title, const QString& message = QString());

// A confirming button and "Cancel"; `confirmed` is called only for the former.
void showConfirmation(const QString& title, const QString& message, const QString& confirmTitle,
                      std::function<void()> confirmed);
