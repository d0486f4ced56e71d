// Switches input off for a part of the screen that stays in sight.
#pragma once

class QWidget;

// Without input `widget` and all in it take neither keys, shortcuts nor clicks, but look as they did. Move
// the focus elsewhere first. Main thread.
void setTakesInput(QWidget& widget, bool takesInput);
