// How a button looks, be it a button of its own or a row of the list.
#pragma once

#include "RQAlertView/RQAlertViewButtonProperties.h"

#include <QPainterPath>
#include <QString>

class QPainter;

enum class RQAlertViewButtonState { Normal, Hovered, Highlighted, Disabled };

// What is painted and where. Both paths and rectangles are in the painter's coordinates.
struct RQAlertViewButtonPainting {
  const QString& title;
  const RQAlertViewButtonLook& look;
  RQAlertViewButtonState state = RQAlertViewButtonState::Normal;
  QRectF rect;
  int padding = 0;
  // The card that the button lies in: its background is rounded where it meets the card's corners.
  QPainterPath card;
  bool focusRing = false;
};

void paintRQAlertViewButton(QPainter& painter, const RQAlertViewButtonPainting& painting);

// The height that the title takes in a button `width` wide, at least `least`.
int heightOfRQAlertViewButton(const QString& title, const RQAlertViewButtonLook& look, int width, int padding,
                              double least);
// The width that the title takes on one line, at its smallest and paddings included.
double leastWidthOfRQAlertViewButton(const QString& title, const RQAlertViewButtonLook& look, int padding);
// Whether nothing of the title is truncated in a button `width` wide.
bool showsWholeTitle(const QString& title, const RQAlertViewButtonLook& look, int width, int padding);
