// A button of a dialog that stands on its own or beside others.
#pragma once

#include "RQAlertView/RQAlertViewButtonPainter.h"
#include "RQAlertView/RQAlertViewButtonProperties.h"

#include <QPainterPath>
#include <QPushButton>

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
