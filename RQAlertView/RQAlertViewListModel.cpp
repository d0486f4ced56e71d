#include "RQAlertView/RQAlertViewListModel.h"

#include <utility>

RQAlertViewListModel::RQAlertViewListModel(EnabledQuestion enabled, QObject* parent)
    : QAbstractListModel(parent), enabled_(std::move(enabled)) {}

void RQAlertViewListModel::setRows(const RQAlertViewRows& rows) {
  if (rows == rows_) return;
  beginResetModel();
  rows_ = rows;
  endResetModel();
}

void RQAlertViewListModel::rowChanged(int row) {
  emit dataChanged(index(row), index(row));
}

void RQAlertViewListModel::allRowsChanged() {
  if (rows_.count() > 0) emit dataChanged(index(0), index(rows_.count() - 1));
}

int RQAlertViewListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_.count();
}

QVariant RQAlertViewListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  return rows_.at(index.row()).title;
}

Qt::ItemFlags RQAlertViewListModel::flags(const QModelIndex& index) const {
  if (!index.isValid() || !enabled_(rows_.at(index.row()))) return Qt::NoItemFlags;
  return Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
}
