// One row of the list of buttons: measures and paints it.
#pragma once

#include <QStyledItemDelegate>

struct RQAlertViewButtonLook;
class RQAlertViewButtonList;

class RQAlertViewCell : public QStyledItemDelegate {
  Q_OBJECT

 public:
  // Without a list it only measures.
  explicit RQAlertViewCell(RQAlertViewButtonList* list = nullptr);

  // Of any title, in a list `width` wide; at least `least`.
  int heightOf(const QString& title, const RQAlertViewButtonLook& look, int width, double least) const;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  // Shows the whole of a title that is truncated.
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;

 private:
  const RQAlertViewButtonList* list_;
};
