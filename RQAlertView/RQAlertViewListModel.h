// The list of buttons as a model: a row for each button, at no cost for those that are not seen.
#pragma once

#include "RQAlertView/RQAlertViewRows.h"

#include <functional>

#include <QAbstractListModel>

class RQAlertViewListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  using EnabledQuestion = std::function<bool(const RQAlertViewRow&)>;

  RQAlertViewListModel(EnabledQuestion enabled, QObject* parent);

  void setRows(const RQAlertViewRows& rows);
  const RQAlertViewRows& rows() const { return rows_; }
  // What is answered about a row has changed.
  void rowChanged(int row);
  void allRowsChanged();

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  EnabledQuestion enabled_;
  RQAlertViewRows rows_;
};
