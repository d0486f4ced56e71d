// A card of a dialog: the rounded background with its shadow. Its border is a view of its own.
#pragma once

#include <QPainterPath>
#include <QPixmap>
#include <QWidget>

// Lies below what stands on the card. The widget is larger than the card by the room that the shadow takes.
class RQAlertViewShadowView : public QWidget {
  Q_OBJECT

 public:
  struct Look {
    QColor backgroundColor;
    double cornerRadius = 0;
    QColor borderColor;
    double borderWidth = 0;
    QColor shadowColor;
    double shadowRadius = 0;
    QPointF shadowOffset;
    QColor separatorsColor;

    friend bool operator==(const Look&, const Look&) = default;
  };

  explicit RQAlertViewShadowView(QWidget* parent);

  void setLook(const Look& look);
  const Look& look() const { return look_; }
  // In the parent's coordinates.
  void setCardGeometry(const QRect& card);
  const QRect& cardGeometry() const { return card_; }
  // Hairlines, in the parent's coordinates: horizontal where wider than high, else vertical.
  void setSeparators(const QList<QRect>& separators);
  // What is painted below the background colour, as large as the card; empty for nothing. It is seen as far
  // as that colour is see-through.
  void setBackdrop(const QPixmap& backdrop);

  // In the parent's coordinates.
  QPainterPath outline() const;

  // How far the shadow of such a look reaches beyond the card, on the widest side.
  static int shadowMargin(const Look& look);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paintShadow(QPainter& painter, const QRectF& card) const;

  Look look_;
  QRect card_;
  QList<QRect> separators_;
  QPixmap backdrop_;
};

// The border of a card, which lies above everything that stands on the card.
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
