// The slim bar that shows how far a part of a dialog is scrolled.
#pragma once

#include "platform/UITextTraits.h"

#include <QScrollBar>

class QPainter;

// Says that what is shown in `area` goes on below, by fading its lower edge into the background.
void paintGoesOn(QPainter& painter, const QRect& area, const QColor& background);

class RQAlertViewScrollIndicator : public QScrollBar {
  Q_OBJECT

 public:
  explicit RQAlertViewScrollIndicator(QWidget* parent = nullptr);

  void setStyle(UIScrollViewIndicatorStyle style);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  UIScrollViewIndicatorStyle style_ = UIScrollViewIndicatorStyle::Default;
};
