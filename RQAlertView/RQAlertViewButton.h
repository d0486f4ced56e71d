// A button of a dialog outside the list, and how every button is measured and painted.
#pragma once

#include "RQAlertView/RQAlertViewModel.h"
#include "platform/UIKeyboard.h"

#include <QPainterPath>
#include <QPushButton>

class QPainter;

enum class RQAlertViewButtonState { Normal, Hovered, Highlighted, Disabled };

// What is painted and where, in the painter's coordinates.
struct RQAlertViewButtonPainting {
  const QString& title;
  const RQAlertViewButtonLook& look;
  RQAlertViewButtonState state = RQAlertViewButtonState::Normal;
  QRectF rect;
  int padding = 0;
  // The card below the button: the background is rounded where it meets the card's corners.
  QPainterPath card;
  bool focusRing = false;
};

void paintRQAlertViewButton(QPainter& painter, const RQAlertViewButtonPainting& painting);

// The height that the title takes in a button `width` wide, at least `least`.
int heightOfRQAlertViewButton(const QString& title, const RQAlertViewButtonLook& look, int width, int padding,
                              double least);
// The width that the title takes on one line, at its smallest and with paddings.
double leastWidthOfRQAlertViewButton(const QString& title, const RQAlertViewButtonLook& look, int padding);
// Whether nothing of the title is truncated in a button `width` wide.
bool showsWholeTitle(const QString& title, const RQAlertViewButtonLook& look, int width, int padding);

// Whether the event is only the repeat of Return or Space held down. It presses nothing: the key was meant
// for what had the focus before.
inline bool isRepeatedAnswer(const QKeyEvent& press) {
  return isRepeated(press) &&
         (press.key() == Qt::Key_Return || press.key() == Qt::Key_Enter || press.key() == Qt::Key_Space);
}

// Its title is plain text: an ampersand is an ampersand.
class RQAlertViewButton : public QPushButton {
  Q_OBJECT

 public:
  RQAlertViewButton(RQAlertViewRow row, int padding, QWidget* parent);

  const RQAlertViewRow& row() const { return row_; }
  const QString& title() const { return row_.title; }
  void setLook(const RQAlertViewButtonLook& look);
  int heightFor(int width, double least) const {
    return heightOfRQAlertViewButton(title(), look_, width, padding_, least);
  }
  // `card` is the outline of the card below the button; both are in the parent's coordinates.
  void place(const QRect& area, const QPainterPath& card);

  // A button that was pressed keeps its highlighted look while the dialog goes.
  void setSelected(bool selected);
  bool isSelected() const { return selected_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  RQAlertViewButtonState buttonState() const;

  RQAlertViewRow row_;
  int padding_;
  RQAlertViewButtonLook look_;
  QPainterPath card_;
  bool selected_ = false;
};
