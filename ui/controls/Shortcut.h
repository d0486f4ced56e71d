// Keys that do what a button does.
#pragma once

#include <QKeySequence>

class UIButton;

// Makes `keys` click `button` wherever the focus is on its screen, and names them in its tooltip. To be
// called while the screen's view is made, before it has a parent. Nothing happens while a dialog lies above
// the screen.
void addShortcut(UIButton& button, const QKeySequence& keys);

// Only names the keys, which the screen takes itself.
void nameShortcut(UIButton& button, const QKeySequence& keys);
