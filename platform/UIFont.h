// The system font in the sizes that the screens ask for.
#pragma once

#include <QFont>

// The application's font with `size` logical pixels at the usual 96 dots an inch; it grows with the desktop's
// text scale. Needs the application object.
QFont systemFontOfSize(double size);
QFont boldSystemFontOfSize(double size);
// The desktop's font for code, in the same way.
QFont fixedPitchFontOfSize(double size);
