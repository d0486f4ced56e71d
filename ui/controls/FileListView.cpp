#include "ui/controls/FileListView.h"

#include "ui/Localized.h"
#include "workspace/ProjectFiles.h"

#include <algorithm>

#include <QScrollBar>

int FileListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(MUArray().size());
}

QVariant FileListModel::data(const QModelIndex& index, int role) const {
  const auto row = static_cast<std::size_t>(index.row());
  if (!index.isValid() || row >= MUArray().size()) return {};
  if (role == Qt::DisplayRole) return shownName(MUArray()[row]);
  return {};
}

void FileListModel::reloadData() {
  beginResetModel();
  endResetModel();
}

FileListView::FileListView(QWidget* parent) : RowListView(parent), model_(this) {
  setPicture(QStringLiteral("na.png"));
  setModel(&model_);
}

void FileListView::reloadData() {
  const int place = verticalScrollBar()->value();
  const int row = currentIndex().row();
  const std::string name = currentName_;
  model_.reloadData();
  if (row >= 0) {
    const std::vector<std::string>& names = MUArray();
    const auto found = std::find(names.begin(), names.end(), name);
    const int same = static_cast<int>(found - names.begin());
    setCurrentIndex(model_.index(found != names.end() ? same : std::min(row, model_.rowCount() - 1)));
  }
  verticalScrollBar()->setValue(place);
}

void FileListView::leavePlace() {
  setCurrentIndex(QModelIndex());
  scrollToTop();
}

void FileListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  RowListView::currentChanged(current, previous);
  const auto row = static_cast<std::size_t>(current.row());
  if (current.isValid() && row < MUArray().size()) currentName_ = MUArray()[row];
}
