// One row of the list of buttons: measures and paints it.
#pragma once

#include <QStyledItemDelegate>

struct RQAlertViewButtonLook;

class RQAlertViewCell : public QStyledItemDelegate {
  Q_OBJECT

 public:
  explicit RQAlertViewCell(QObject* parent = nullptr) : QStyledItemDelegate(parent) {}
};
