// The colours of the screens that are no role of the palette.
#pragma once

#include "platform/ApplicationStyle.h"

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

}  // namespace colours
