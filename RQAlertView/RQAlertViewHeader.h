// What stands above a dialog's buttons: title, message and content, in an area that scrolls where they are
// too much for it.
#pragma once

#include <QScrollArea>

class RQAlertView;
class RQAlertViewContentArea;
class RQAlertViewLabel;

class RQAlertViewHeader : public QScrollArea {
  Q_OBJECT

 public:
  // Takes `content` over. `alertView` outlives the header.
  RQAlertViewHeader(const RQAlertView& alertView, RQAlertViewContentArea* content, QWidget* parent);

  // Takes the dialog's texts, fonts and colours over.
  void applyLooks();

  // Paddings included; 0 where there is nothing to show.
  int wholeHeight(int width) const;
  // Lays everything out for `area`, which is in the parent's coordinates; empty: nothing is shown.
  void layOutIn(const QRect& area);
  // Scrolls to what has the focus, where that is in the header.
  void keepFocusInSight();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  class Overlay;

  int paddingVertical() const;
  // Walks over the parts that are shown, from the top; answers the height of all.
  template <typename Visit>
  int eachPart(int innerWidth, Visit visit) const;

  const RQAlertView& alertView_;
  QWidget* parts_;
  RQAlertViewLabel* title_;
  RQAlertViewLabel* message_;
  RQAlertViewContentArea* content_;
  Overlay* overlay_;
};
