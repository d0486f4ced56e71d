// The box of a dialog: title, message and content above the buttons, on a card; on a phone's action sheet the
// cancel button on a card of its own.
#pragma once

#include "RQAlertView/RQAlertViewButton.h"
#include "RQAlertView/RQAlertViewButtonList.h"
#include "RQAlertView/RQAlertViewHeader.h"
#include "RQAlertView/RQAlertViewShadowView.h"

// From now on the box of each dialog is exposed to assistive technology as an alert or a dialog with its
// title, and the list of buttons as a list of items that can be pressed. Further calls do nothing.
void installRQAlertViewAccessibility();

// It knows neither the cover nor the stack of dialogs.
class RQAlertViewBox : public QWidget {
  Q_OBJECT

 public:
  RQAlertViewBox(std::shared_ptr<const RQAlertViewModel> dialog, RQAlertViewPress press, QWidget* parent);

  const RQAlertViewModel& dialog() const { return *dialog_; }
  RQAlertViewHeader& header() const { return *header_; }

  // Takes over the dialog's texts, looks and width and lays everything out inside `room`, which is in the
  // parent's coordinates: in its middle, or for an action sheet from the bottom at its lower edge.
  void layOutIn(const QRect& room);
  // What shows through the cards: a picture as large as the parent, null for none.
  void setBackdrop(const QPixmap& backdrop);
  // The looks of the buttons, or whether they are enabled, have changed.
  void buttonsChanged();

  // What gets the focus when the dialog has been shown: never a destructive button.
  QWidget* initialFocus();
  // The cancel or the destructive button where it is not a row of the list; else null.
  RQAlertViewButton* buttonOfKind(RQAlertViewButtonKind kind) const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Heights {
    int header = 0;  // what it would take
    int headerShown = 0;
    int buttons = 0;
    int cancel = 0;
  };

  bool holdsFocus() const;
  // The row of the enabled cancel button, else of the first enabled action; -1 for none.
  int safeRow() const;
  void applyBackdrop(RQAlertViewShadowView& card) const;
  void arrangeButtons(int width);
  bool fitSideBySide(const QList<RQAlertViewRow>& rows, int width) const;
  RQAlertViewButton* makeButton(const RQAlertViewRow& row, int padding);
  Heights heightsFor(int width, double roomHeight) const;
  void placeButtons(const QRect& area, const QRect& card);
  // The separate cancel button first, then those side by side.
  std::vector<RQAlertViewButton*> buttons() const;

  std::shared_ptr<const RQAlertViewModel> dialog_;
  RQAlertViewPress press_;
  RQAlertViewShadowView* card_;
  RQAlertViewShadowView* cancelCard_;
  RQAlertViewHeader* header_;
  QPixmap backdrop_;
  // Made when it is needed; hidden where the buttons are side by side.
  RQAlertViewButtonList* list_ = nullptr;
  bool listed_ = false;
  std::vector<RQAlertViewButton*> sideBySide_;
  RQAlertViewButton* separateCancel_ = nullptr;
};
