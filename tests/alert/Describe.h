// Dialogs from one line of text each, and the properties of their looks by name.
#pragma once

#include "RQAlertView/RQAlertView.h"

#include <functional>
#include <memory>
#include <vector>

#include <QString>

using Dialog = std::shared_ptr<RQAlertView>;

// KIND [KEY=VALUE ...]. The kind is alert or sheet. Keys: title ("Title" if there is none), message, buttons
// (joined by commas), cancel, destructive; fields (their number), label (of an indicator, or of the bar where
// progress is given), view (a view that high); and what change() takes. "_" is a blank, "\n" a line end.
Dialog dialogFrom(const QString& description);

// KEY=VALUE ...: properties, which get a number, a colour's name or "none", a size of font (with "bold" or
// "fixed" before it), COLOUR*SIDE for a picture, X,Y for a point, the name of an alignment or of a blur; and
// buttonN.icon, .iconHighlighted, .iconDisabled, .lines, .enabled.
void change(RQAlertView& dialog, const QString& changes);

struct LookProperty {
  QString name;
  QString shared, own;  // starting values in the shared object and of a plain alert, as read() gives them
  std::function<QString(const RQAlertView&)> read;
  std::function<void(RQAlertView&, const QString&)> write;
};

// One property, by its name, as read() gives it.
QString lookOf(const RQAlertView& dialog, const QString& name);

// Those of defaults.tsv, in its order.
const std::vector<LookProperty>& lookProperties();
