// What lies behind a dialog, blurred.
#pragma once

#include "platform/UITextTraits.h"

#include <QPixmap>

class QWidget;

// A picture of `widget` as it is now, blurred and tinted as the style says. Empty where the widget is.
QPixmap blurredPicture(QWidget& widget, UIBlurEffectStyle style);
