// One row of the list of buttons: measures and paints it.
#pragma once

#include "RQAlertView/RQAlertViewButtonProperties.h"

#include <functional>

#include <QPainterPath>
#include <QStyledItemDelegate>

struct RQAlertViewRow;
class RQAlertViewRows;

class RQAlertViewCell : public QStyledItemDelegate {
  Q_OBJECT

 public:
  // What the rows of one list have in common.
  struct Setting {
    std::function<RQAlertViewButtonLook(const RQAlertViewRow&)> look;
    const RQAlertViewRows* rows = nullptr;
    bool uniform = true;  // every row is leastHeight high
    double leastHeight = 0;
    int width = 0;
    QColor separatorsColor;
    QPainterPath card;  // in the viewport's coordinates
    int pressedRow = -1;
  };

  explicit RQAlertViewCell(QObject* parent = nullptr) : QStyledItemDelegate(parent) {}

  Setting& setting() { return setting_; }

  int heightOfRow(const RQAlertViewRow& row) const;
  // Of any title, in a list `width` wide; at least `least`.
  int heightOf(const QString& title, const RQAlertViewButtonLook& look, int width, double least) const;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  // Shows the whole of a title that is truncated.
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;

 private:
  Setting setting_;
};
