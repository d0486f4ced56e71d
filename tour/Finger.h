// Drives the application as a person does: finds a control by the name that assistive technology reads, and
// clicks or types on the real widget.
#pragma once

#include <functional>
#include <stdexcept>

#include <QString>

class QWidget;

namespace finger {

// Something that should be on screen is not, in spite of waiting for it.
class Missing : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// How long all of these wait, in milliseconds: by default long enough for a whole build on a slow machine.
extern int patience;

// Runs the event loop until `condition` holds. Throws Missing with `what` if it does not within the patience.
void waitUntil(const std::function<bool()>& condition, const QString& what);

// Clicks the button, list row or switch called `name` in the key window, waiting for it to be there and
// enabled. Names are compared whole, with accessible names and with visible texts.
void tap(const QString& name);

// Whether a control or text called `name` is visible in the key window.
bool sees(const QString& name);
void waitToSee(const QString& name);

// Types `text` with real keys into the text field that is visible in the key window.
void type(const QString& text);

// The widget with this accessible name anywhere in the key window, waiting for it.
QWidget* find(const QString& accessibleName);

}  // namespace finger
