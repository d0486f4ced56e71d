// Sizes of the screens, in logical pixels, and their colours that are not roles of the palette; fonts and
// greys come with it.
#pragma once

#include "platform/ApplicationStyle.h"

namespace metrics {

inline constexpr int touchSize = 44;  // the smallest side of anything that is tapped
inline constexpr int iconSize = 24;
// The one scale of text: titles, everything that is tapped, and what is read beside it.
inline constexpr double titleTextSize = 18;
inline constexpr double bodyTextSize = 15;
inline constexpr double smallTextSize = 13;
inline constexpr double fixedPitchTextSize = 13;
inline constexpr int buttonPadding = 16;
inline constexpr int bareButtonRadius = 10;
inline constexpr int focusRingWidth = 2;
inline constexpr int switchWidth = 52;
inline constexpr int switchHeight = 32;
inline constexpr int rowHeight = 48;
inline constexpr int rowPadding = 16;
inline constexpr int textPadding = 10;
inline constexpr int barPadding = 8;
inline constexpr int barSpacing = 4;
inline constexpr int fieldHeight = 36;
// From this width on, what is one below the other on a phone is side by side.
inline constexpr int wideScreen = 900;
inline constexpr int sideColumnWidth = 320;
inline constexpr int widestControls = 560;
// Below this height, pictures that only adorn are shown small.
inline constexpr int lowScreen = 520;
inline constexpr int emblemSize = 128;
inline constexpr int smallEmblemSize = 44;
inline constexpr int addressLines = 4;

}  // namespace metrics

namespace colours {

inline const QColor listGround = grey(40);
inline const QColor separator = grey(40);
inline const QColor cellGround = grey(53);
// Darker than the cell, since its text needs all the contrast that it can get.
inline const QColor cellUnderPointer = grey(46);
inline const QColor cellText = grey(153);
inline const QColor tileGround = grey(53);
inline const QColor tileBorder = grey(120);
inline const QColor buildButtonGround = grey(80);
inline const QColor editorButtonGround = grey(32);
inline const QColor labelGround = grey(96);
inline const QColor linkGround(64, 95, 223);
inline const QColor switchOff = grey(120);
inline const QColor switchKnob = Qt::white;
// Stands out from every ground that a control has.
inline const QColor focusRing(150, 210, 255);

// Code: its colours are in CodeColours.h, and all of them can be read on these grounds.
inline const QColor lineNumber = grey(160);
inline const QColor currentLine = grey(64);
inline const QColor codeSelection(0, 60, 130);
inline const QColor bracket = Qt::white;
inline const QColor bracketGround = grey(96);

}  // namespace colours
