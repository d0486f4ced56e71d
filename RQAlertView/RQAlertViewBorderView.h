// The border of a card, which lies above everything that stands on the card.
#pragma once

#include "RQAlertView/RQAlertViewShadowView.h"

#include <QWidget>

class RQAlertViewBorderView : public QWidget {
  Q_OBJECT

 public:
  explicit RQAlertViewBorderView(QWidget* parent);

  // Covers `card`, which is a sibling of this view, and comes to the front. Hidden where the card is hidden
  // or its look has no border.
  void frame(const RQAlertViewShadowView& card);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  RQAlertViewShadowView::Look look_;
};
