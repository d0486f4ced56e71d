// The list of the current project's files.
#pragma once

#include "ui/controls/RowListView.h"

#include <string>

#include <QAbstractListModel>

// The rows are MUArray(), read when they are shown; reloadData() after each change of it.
class FileListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  using QAbstractListModel::QAbstractListModel;

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  void reloadData();
};

class FileListView : public RowListView {
  Q_OBJECT

 public:
  explicit FileListView(QWidget* parent = nullptr);

  // Shows MUArray() anew, keeping the place in the list where the rows still allow it: the same file stays
  // the current one wherever it stands now, or if it has gone, the one in its place.
  void reloadData();
  // Goes back to the top, with no file current: for the files of another project.
  void leavePlace();

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

 private:
  FileListModel model_;
  std::string currentName_;  // of the current row, for finding it in the next list
};
