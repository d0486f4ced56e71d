// The box of a dialog: title, message and content above the buttons, on a card; on a phone's action sheet the
// cancel button on a card of its own.
#pragma once

#include "RQAlertView/RQAlertViewButton.h"
#include "RQAlertView/RQAlertViewButtonList.h"
#include "RQAlertView/RQAlertViewRows.h"
#include "RQAlertView/RQAlertViewShadowView.h"

#include <vector>

#include <QPixmap>
#include <QWidget>

class RQAlertView;
class RQAlertViewContentArea;
class RQAlertViewHeader;

// Reads everything from its dialog and reports taps; it knows neither the cover nor the stack of dialogs.
class RQAlertViewBox : public QWidget {
  Q_OBJECT

 public:
  // Takes `content` over. `alertView` outlives the box.
  RQAlertViewBox(const RQAlertView& alertView, RQAlertViewContentArea* content, QWidget* parent);
  ~RQAlertViewBox() override;

  const RQAlertView& alertView() const { return alertView_; }

  // Takes the dialog's texts, looks and width over and lays everything out inside `room`, which is in the
  // parent's coordinates: in its middle, or for an action sheet that comes from the bottom at its lower edge.
  void layOutIn(const QRect& room);
  // What shines through the cards: a picture as large as the parent, empty for none.
  void setBackdrop(const QPixmap& backdrop);
  // Whether a button can be tapped has changed, or how it looks.
  void buttonChanged(RQAlertViewButtonKind kind, std::size_t index);
  void allButtonsChanged();

  // What the focus goes to when the dialog has been shown: never a destructive button.
  QWidget* initialFocus();
  // The first button of this kind that is no row of the list, or null.
  RQAlertViewButton* buttonOfKind(RQAlertViewButtonKind kind) const;

 signals:
  void tapped(RQAlertViewButtonKind kind, std::size_t index);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  enum class Arrangement { None, SideBySide, List };
  struct Heights {
    int header = 0;  // what it would take
    int headerShown = 0;
    int buttons = 0;
    int cancel = 0;
  };

  bool holdsFocus() const;
  // The row of the cancel button, else the first one that destroys nothing, of those that can be tapped; or
  // -1.
  int safeRow() const;
  void applyLooks(int width);
  void applyBackdrop(RQAlertViewShadowView& card, const QRect& inFrame) const;
  void arrangeButtons(int width);
  void rebuildSideBySide(const RQAlertViewRows& rows);
  void rebuildCancel();
  RQAlertViewButton* makeButton(const RQAlertViewRow& row, int padding);
  Arrangement arrangementFor(const RQAlertViewRows& rows, int width) const;

  Heights heightsFor(int width, double roomHeight) const;
  void placeButtons(const QRect& area, const QRect& card);
  double buttonHeight(const RQAlertViewButton& button, int width) const;

  const RQAlertView& alertView_;
  RQAlertViewShadowView* card_;
  RQAlertViewShadowView* cancelCard_;
  RQAlertViewHeader* header_;
  RQAlertViewBorderView* border_;
  RQAlertViewBorderView* cancelBorder_;
  QPixmap backdrop_;
  RQAlertViewButtonList* list_ = nullptr;
  std::vector<RQAlertViewButton*> sideBySide_;
  std::vector<RQAlertViewRow> sideBySideRows_;
  RQAlertViewButton* separateCancel_ = nullptr;
  Arrangement arrangement_ = Arrangement::None;
  RQAlertViewRows rows_;
};
