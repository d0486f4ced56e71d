// What a dialog paints below, above and beside its contents: its cards, their borders, focus rings, and the
// signs that something scrolls.
#pragma once

#include "RQAlertView/RQAlertViewModel.h"

#include <QPainterPath>
#include <QPixmap>
#include <QScrollBar>
#include <QWidget>

class QAbstractScrollArea;

// Paints above its siblings, and lets every touch through.
class RQAlertViewOverlay : public QWidget {
  Q_OBJECT

 public:
  using Paint = std::function<void(QPainter& painter, const QRect& area)>;
  RQAlertViewOverlay(Paint paint, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Paint paint_;
};

// A card: the rounded background with its shadow and separators, below what is on the card, and the border, a
// sibling above all that. The widget is larger than the card by the room that the shadow takes.
class RQAlertViewShadowView : public QWidget {
  Q_OBJECT

 public:
  RQAlertViewShadowView(std::shared_ptr<const RQAlertViewModel> dialog, QWidget* parent);

  // In the parent's coordinates. Takes over the dialog's look. An empty card is hidden. The border comes to
  // the front of its siblings.
  void setCardGeometry(const QRect& card);
  const QRect& cardGeometry() const { return card_; }
  // Hairlines, in the parent's coordinates: horizontal where wider than high, else vertical.
  void setSeparators(const QList<QRect>& separators);
  // Painted below the background colour, as large as the card; null for nothing.
  void setBackdrop(const QPixmap& backdrop);
  // In the parent's coordinates.
  QPainterPath outline() const;

  // How far the shadow reaches beyond the card, on the widest side.
  static int shadowMargin(const RQAlertViewAppearance& look);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paintShadow(QPainter& painter) const;
  void paintBorder(QPainter& painter, const QRect& area) const;

  std::shared_ptr<const RQAlertViewModel> dialog_;
  RQAlertViewOverlay* border_;
  QRect card_;
  QList<QRect> separators_;
  QPixmap backdrop_;
};

// The slim bar that shows how far a piece of a dialog is scrolled.
class RQAlertViewScrollIndicator : public QScrollBar {
  Q_OBJECT

 public:
  // Makes `area` scroll up and down only, frameless and transparent, with such a bar.
  static void install(QAbstractScrollArea& area);
  // `area` has such a bar.
  static void takeLook(QAbstractScrollArea& area, const RQAlertViewAppearance& look);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  UIScrollViewIndicatorStyle style_ = UIScrollViewIndicatorStyle::Default;
};

// Fades the lower edge of `area` into the background: more is below.
void paintGoesOn(QPainter& painter, const QRect& area, const QColor& background);
void paintFocusRing(QPainter& painter, const QRectF& around, const QColor& color);
