// A button of a dialog that stands on its own or beside others.
#pragma once

#include "RQAlertView/RQAlertViewButtonProperties.h"

#include <QPainterPath>
#include <QPushButton>
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

// Its title is plain text: an ampersand is an ampersand. Return and Space tap it, but not their repeats while
// they are held down: the press was meant for what had the focus before.
class RQAlertViewButton : public QPushButton {
  Q_OBJECT

 public:
  RQAlertViewButton(const QString& title, int padding, QWidget* parent);

  const QString& title() const { return title_; }
  int padding() const { return padding_; }
  void setLook(const RQAlertViewButtonLook& look);
  const RQAlertViewButtonLook& look() const { return look_; }
  // The outline of the card that the button lies in, in the button's coordinates.
  void setCard(const QPainterPath& card);

  // Selected: it has been tapped and keeps its highlighted look while the dialog goes.
  void setSelected(bool selected);
  bool isSelected() const { return selected_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  RQAlertViewButtonState buttonState() const;

  QString title_;
  int padding_;
  RQAlertViewButtonLook look_;
  QPainterPath card_;
  bool selected_ = false;
};
